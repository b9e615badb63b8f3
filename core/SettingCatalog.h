// SettingCatalog: the fixed table of the game variables Tarnwick knows, and the controls that show them.
#pragma once

#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>
#include <optional>

/// The part of a file a read or write covers.
enum class FileScope { Whole = 0, Renderer = 1, Controls = 2, HudDisplay = 3, Railgun = 4 };

enum class Area { General, Renderer, Controls, HudDisplay, Railgun, ShownOnly };

enum class ControlKind { CheckBox, OptionPair, List, Slider, TextField, Button };

/// How a file value becomes a control state and back.
enum class Mapping {
    CheckDirect, // checked = 1
    CheckInverted, // checked = 0; written as 1 minus the state
    Position, // option pair or list: position = V
    ItemValue, // rate: the entry whose item value equals V
    Khz, // s_khz: 22 selects "22 KHz", anything else "11 KHz"
    ByName, // r_texturemode: GL_ names, case-insensitive
    BitRanges, // r_texturebits, r_colorbits: 0-15, 16-23, 24-32
    SliderInt, // position = V
    SliderTenths, // position = V x 10, held as a single-precision number
    Sensitivity, // position = tenths, written with one decimal
    TextNumber, // integer text; written as the text's numeric value
    TextTrimmed, // integer text; written as the text trimmed of blanks
    Name, // the player name, written untrimmed
    Model, // backslashes become slashes; written trimmed
    Awards, // info string of a1..a6
    Tiers, // info string of tier1..tier8
    ShownOnly, // on a page, never read or written
};

/// The help board's message types, each with its own icon.
enum class MsgType { Warning = 0, Caution = 1, Information = 2, Hint = 3 };

/// Part of the help board's text: the board's icon is the message type.
struct HelpText
{
    QString text;
    MsgType msgType = MsgType::Information;
};

struct ReadRule
{
    std::optional<double> upper;
    std::optional<double> fallback;
};

struct SliderRange
{
    int minimum = 0;
    int maximum = 0;
    int scale = 1;
    int largeStep = 1;
    int smallStep = 1;
};

struct SettingRow
{
    QString name; // the game variable, also the control's tag; empty for an untagged shown-only control
    Area area = Area::General;
    QString page; // page button caption
    QString subPage; // sub-page of the Control page, or empty
    QString control; // control name; arrays name the array (txtAwards, chkTiers, optLighting)
    ControlKind kind = ControlKind::CheckBox;
    int count = 1; // values the control holds: 6 awards, 8 tiers, 0 for a plain push button
    QString caption;
    QString captionSuffix; // slider labels: " min" after Team Chat Time
    Mapping mapping = Mapping::ShownOnly;
    ReadRule rule;
    bool snapshot = false; // held in the file snapshot
    QStringList entries; // list entries, position 0 first
    QList<int> itemValues; // rate's item values
    SliderRange slider;
    int initialState = 0; // start state of a check box, option pair, list or slider
    QString initialText; // start text of a text field or button caption
    int firstSlot = 0; // where the row's values start in a document's value array

    bool isStored() const { return mapping != Mapping::ShownOnly; }
    bool isText() const { return kind == ControlKind::TextField || kind == ControlKind::Button; }
};

class SettingCatalog
{
public:
    static const SettingCatalog &instance();

    const QList<SettingRow> &rows() const { return m_rows; }
    const SettingRow &row(int index) const { return m_rows.at(index); }
    int slotCount() const { return m_slotCount; }

    /// Row of a stored setting by name, compared without regard to case; -1 when not stored.
    int indexOfSetting(QStringView name) const;
    /// Row by control name (exact); -1 when unknown.
    int indexOfControl(QStringView control) const;
    /// Stored rows of an area in the order the writer writes them.
    const QList<int> &writeOrder(Area area) const;
    static bool inScope(Area area, FileScope scope);

    /// The help text for a control, chosen among its variants by the control's own state (check box
    /// state or list position) and, for the shadow list, by whether Marks on Walls is on.
    std::optional<HelpText> help(QStringView control, int state, bool marksOn = true) const;
    QStringList controlsWithoutHelp() const;

private:
    SettingCatalog();

    QList<SettingRow> m_rows;
    int m_slotCount = 0;
    QList<QList<int>> m_writeOrder;
    QHash<QString, int> m_storedByName; // lower-case name to row
};
