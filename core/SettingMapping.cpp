#include "SettingMapping.h"

#include "CfgNumber.h"
#include "CfgText.h"
#include "ConfigReader.h"

using CfgNumber::clampToRange;
using CfgNumber::roundHalfEven;

namespace SettingMapping {

namespace {

    const int bitCounts[] = { 0, 16, 32 };

    // r_texturemode's entry as the game spells it: "GL Linear MipMap Nearest" is GL_LINEAR_MIPMAP_NEAREST.
    QString textureModeName(const QString &entry)
    {
        return CfgText::asciiUpper(entry).replace(u' ', u'_');
    }

    // The info string's key of slot `index`: a1..a6 for awards, tier1..tier8 for videos.
    const QString &infoKey(const SettingRow &row, int index)
    {
        static const auto keys = [](const char *stem, int count) {
            QStringList out;
            for (int k = 1; k <= count; ++k)
                out.append(QString::fromLatin1(stem) + QString::number(k));
            return out;
        };
        static const QStringList awards = keys("a", 6);
        static const QStringList tiers = keys("tier", 8);
        return (row.mapping == Mapping::Awards ? awards : tiers).at(index);
    }

    bool isNumeric(Mapping m)
    {
        switch (m) {
        case Mapping::Name:
        case Mapping::Model:
        case Mapping::ByName:
        case Mapping::Awards:
        case Mapping::Tiers:
        case Mapping::ShownOnly:
            return false;
        default:
            return true;
        }
    }

} // namespace

bool readIntoSnapshot(const SettingRow &row, const QString &value, SlotValue *snapshot)
{
    double n = 0;
    if (isNumeric(row.mapping)) {
        const std::optional<double> parsed = CfgNumber::parse(value);
        if (!parsed)
            return false;
        n = *parsed;
    }
    switch (row.mapping) {
    case Mapping::CheckInverted:
        snapshot->number = 1 - roundHalfEven(n);
        break;
    case Mapping::SliderTenths:
        snapshot->number = double(float(n));
        break;
    case Mapping::Sensitivity:
        snapshot->number = CfgNumber::roundHalfAway(n * 10);
        break;
    case Mapping::Name:
    case Mapping::ByName:
        snapshot->text = value;
        break;
    case Mapping::Model:
        snapshot->text = QString(value).replace(u'\\', u'/');
        break;
    case Mapping::Awards:
        for (int k = 0; k < row.count; ++k)
            snapshot[k].number = roundHalfEven(CfgNumber::numericValue(InfoValue(value, infoKey(row, k) + u'\\')));
        break;
    case Mapping::Tiers:
        for (int k = 0; k < row.count; ++k)
            snapshot[k].number = CfgNumber::numericValue(InfoValue(value, infoKey(row, k) + u'\\')) == 1 ? 1 : 0;
        break;
    case Mapping::ShownOnly:
        return false;
    default: // check boxes, lists, integer sliders and text fields hold the integer rounding
        snapshot->number = roundHalfEven(n);
        break;
    }
    return true;
}

void snapshotToControl(const SettingRow &row, const SlotValue *snapshot, SlotValue *control)
{
    const double n = snapshot->number;
    const int last = int(row.entries.size()) - 1;
    switch (row.mapping) {
    case Mapping::CheckDirect:
    case Mapping::CheckInverted:
    case Mapping::ShownOnly: // the two sound boxes that keep a snapshot entry
        control->number = clampToRange(n, 0, 1);
        break;
    case Mapping::Position:
        control->number = clampToRange(n, 0, last);
        break;
    case Mapping::ItemValue:
        if (const qsizetype i = row.itemValues.indexOf(n); i >= 0)
            control->number = double(i);
        break;
    case Mapping::Khz:
        control->number = n == 22 ? 1 : 0;
        break;
    case Mapping::ByName:
        for (int i = 0; i <= last; ++i) {
            if (CfgText::equalsNoCase(snapshot->text, textureModeName(row.entries[i])))
                control->number = i;
        }
        break;
    case Mapping::BitRanges:
        if (n >= 0 && n <= 15)
            control->number = 0;
        else if (n >= 16 && n <= 23)
            control->number = 1;
        else if (n >= 24 && n <= 32)
            control->number = 2;
        break;
    case Mapping::SliderInt:
    case Mapping::Sensitivity:
        control->number = clampToRange(n, row.slider.minimum, row.slider.maximum);
        break;
    case Mapping::SliderTenths: // a single-precision value times ten, as the slider takes it
        control->number = clampToRange(roundHalfEven(float(n) * 10.0f), row.slider.minimum, row.slider.maximum);
        break;
    case Mapping::TextNumber:
    case Mapping::TextTrimmed:
        control->text = CfgNumber::formatInteger(n);
        break;
    case Mapping::Name:
    case Mapping::Model:
        control->text = snapshot->text;
        break;
    case Mapping::Awards:
        for (int k = 0; k < row.count; ++k)
            control[k].text = CfgNumber::formatInteger(snapshot[k].number);
        break;
    case Mapping::Tiers:
        for (int k = 0; k < row.count; ++k)
            control[k].number = clampToRange(snapshot[k].number, 0, 1);
        break;
    }
}

void controlToSnapshot(const SettingRow &row, const SlotValue *control, SlotValue *snapshot)
{
    const int position = int(control->number);
    switch (row.mapping) {
    case Mapping::ItemValue:
        snapshot->number = row.itemValues.value(position);
        break;
    case Mapping::Khz:
        snapshot->number = position == 1 ? 22 : 11;
        break;
    case Mapping::ByName:
        snapshot->text = textureModeName(row.entries.value(position));
        break;
    case Mapping::BitRanges:
        snapshot->number = bitCounts[qBound(0, position, 2)];
        break;
    case Mapping::SliderTenths:
        snapshot->number = double(float(position / 10.0));
        break;
    case Mapping::TextNumber:
    case Mapping::TextTrimmed:
        snapshot->number = roundHalfEven(CfgNumber::numericValue(control->text));
        break;
    case Mapping::Name:
    case Mapping::Model:
        snapshot->text = control->text;
        break;
    case Mapping::Awards:
        for (int k = 0; k < row.count; ++k)
            snapshot[k].number = roundHalfEven(CfgNumber::numericValue(control[k].text));
        break;
    case Mapping::Tiers:
        for (int k = 0; k < row.count; ++k)
            snapshot[k].number = control[k].number;
        break;
    default: // check boxes hold their state, lists and sliders their position
        snapshot->number = position;
        break;
    }
}

QString fileValue(const SettingRow &row, const SlotValue *control)
{
    const int position = int(control->number);
    switch (row.mapping) {
    case Mapping::CheckInverted:
        return QString::number(1 - position);
    case Mapping::ItemValue:
        return QString::number(row.itemValues.value(position));
    case Mapping::Khz:
        return row.entries.value(position).left(2);
    case Mapping::ByName:
        return textureModeName(row.entries.value(position));
    case Mapping::BitRanges:
        return QString::number(bitCounts[qBound(0, position, 2)]);
    case Mapping::SliderTenths:
        return CfgNumber::formatTenths(position);
    case Mapping::Sensitivity:
        return QString::number(position / 10) + u'.' + QString::number(position % 10);
    case Mapping::TextNumber:
        return CfgNumber::formatNumber(CfgNumber::numericValue(control->text));
    case Mapping::TextTrimmed:
    case Mapping::Model:
        return CfgText::trimBlanks(control->text);
    case Mapping::Name:
        return control->text;
    case Mapping::Awards:
    case Mapping::Tiers: {
        QString info;
        for (int k = 0; k < row.count; ++k) {
            const QString value
                = row.mapping == Mapping::Awards ? control[k].text : QString::number(int(control[k].number));
            info += u'\\' + infoKey(row, k) + u'\\' + value;
        }
        return info;
    }
    default: // direct check boxes, position lists, integer sliders
        return QString::number(position);
    }
}

} // namespace SettingMapping
