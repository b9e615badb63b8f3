#include "Defaults.h"

#include "SettingCatalog.h"

#include <array>
#include <utility>

namespace {

using KeyPair = std::pair<const char *, const char *>;

const std::array<KeyPair, ActionTable::Count> defaultKeys { {
    { "SHIFT", "" },
    { "W", "UPARROW" },
    { "S", "DOWNARROW" },
    { "A", "" },
    { "D", "" },
    { "SPACE", "" },
    { "C", "" },
    { "LEFTARROW", "" },
    { "RIGHTARROW", "" },
    { "ALT", "MOUSE2" },
    { "CTRL", "MOUSE1" },
    { "/", "MWHEELDOWN" },
    { "[", "MWHEELUP" },
    { "1", "" },
    { "2", "" },
    { "3", "" },
    { "4", "" },
    { "5", "" },
    { "6", "" },
    { "7", "" },
    { "8", "" },
    { "9", "" },
    { "0", "" },
    { "PGDN", "" },
    { "DEL", "" },
    { "END", "" },
    { "MOUSE3", "" },
    { "TAB", "" },
    { "ENTER", "" },
    { "", "" },
    { "T", "" },
    { "", "" },
    { "", "" },
    { "", "" },
    { "F11", "" },
    { "", "" },
    { "`", "~" },
} };

const std::pair<const char *, int> defaultPositions[] = {
    { "cbTexDetail", 1 },
    { "cbShadows", 1 },
    { "cbTexMode", 3 },
    { "cbTexQual", 0 },
    { "cbClrs", 0 },
    { "cbWDetail", 1 },
    { "cbResolution", 3 },
    { "cbColor", 0 },
};

const char *const clearedHudBoxes[] = { "chk2D", "chkStBar", "chkIcons", "chk3DIcons", "chkLAG", "chkFPS", "chkTimer",
    "chkKiller", "chkLAW", "chkMotd", "chkCHair", "chkMsg", "chkWModel" };

int rowOf(const char *control)
{
    return SettingCatalog::instance().indexOfControl(QString::fromLatin1(control));
}

SlotValue &snapshotOf(ConfigDocument &doc, const char *setting)
{
    return doc.snapshotSlot(SettingCatalog::instance().indexOfSetting(QString::fromLatin1(setting)));
}

} // namespace

QString defaultKey(int action, KeySlot slot)
{
    const KeyPair &keys = defaultKeys.at(action);
    return QString::fromLatin1(slot == KeySlot::First ? keys.first : keys.second);
}

void Defaults(ConfigDocument &doc, bool reset)
{
    if (!reset)
        return;
    ActionBindings &bindings = doc.bindingsForUpdate();
    for (int action = 0; action < ActionTable::Count; ++action) {
        bindings.setKey(action, KeySlot::First, defaultKey(action, KeySlot::First));
        bindings.setKey(action, KeySlot::Second, defaultKey(action, KeySlot::Second));
    }
    for (const auto &[control, position] : defaultPositions)
        doc.setState(rowOf(control), 0, position);

    snapshotOf(doc, "name").text = QStringLiteral("UnnamedPlayer");
    snapshotOf(doc, "r_flares").number = 1;
    snapshotOf(doc, "r_gamma").number = 1.0;
    snapshotOf(doc, "s_khz").number = 0;
    snapshotOf(doc, "rate").number = 0;
    snapshotOf(doc, "cl_packetdup").number = 0;
    snapshotOf(doc, "con_notifytime").number = 3;
    snapshotOf(doc, "cg_crosshairsize").number = 24;

    doc.announceReset();
    doc.setModified(false);
}

void NewAllClear(ConfigDocument &doc)
{
    const int awards = rowOf("txtAwards");
    for (int k = 0; k < SettingCatalog::instance().row(awards).count; ++k)
        doc.setText(awards, k, QStringLiteral("0"));
    doc.bindingsForUpdate().ClearAllBindings();
    for (const char *box : clearedHudBoxes)
        doc.setState(rowOf(box), 0, 0);
    doc.announceReset();
}

void NewCfg(ConfigDocument &doc, const QString &name, NewMode mode)
{
    if (mode == NewMode::ResetToDefaults)
        Defaults(doc, true);
    else if (mode == NewMode::Clear)
        NewAllClear(doc);
    doc.setFile(QString(), name, false);
    doc.setCanRestore(false);
    doc.setModified(false);
}

void StartUpDocument(ConfigDocument &doc)
{
    Defaults(doc, true);
    NewCfg(doc, QStringLiteral("Untitled"), NewMode::Clear);
}
