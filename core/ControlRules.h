// ControlRules: what the pages derive from the controls' values — which controls a box enables,
// what a slider's label reads, which text fields take digits only or may not stay empty.
#pragma once

#include "ConfigDocument.h"
#include "SettingCatalog.h"

#include <QList>
#include <QString>
#include <QStringList>

namespace ControlRules {

struct Enablement
{
    QString control; // a dependent control; its caption label follows it
    bool enabled = true;

    bool operator==(const Enablement &) const = default;
};

/// The boxes other controls depend on, in the order their effects are applied after a whole
/// document is shown.
const QStringList &controllingControls();
/// What a change of `control` enables and disables, judged by the document's current values;
/// empty for a control nothing depends on.
QList<Enablement> effectsOf(QStringView control, const ConfigDocument &doc);
/// The effects of every controlling box in order, as after a whole document is shown.
QList<Enablement> allEffects(const ConfigDocument &doc);

/// A slider's label for a position: "Gamma: 1.0", "Handicap: 100 / None", "Team Chat Time: 3 min"; the view
/// size's label reads "View Size: 100" wherever its slider stands.
QString sliderLabel(const SettingRow &row, int position);
/// Text fields that take digits only.
bool isNumericField(QStringView control);
/// Text fields that turn "0" when emptied.
bool mustNotBeEmpty(QStringView control);

} // namespace ControlRules
