#include "ControlRules.h"

#include <functional>

namespace ControlRules {

namespace {

    bool checked(const ConfigDocument &doc, const char *control)
    {
        return doc.state(QString::fromLatin1(control)) != 0;
    }

    struct Rule
    {
        const char *changed;
        std::function<QList<Enablement>(const ConfigDocument &)> effects;
    };

    QList<Enablement> all(std::initializer_list<const char *> controls, bool enabled)
    {
        QList<Enablement> out;
        for (const char *control : controls)
            out.append({ QString::fromLatin1(control), enabled });
        return out;
    }

    // Each rule reads the boxes it names at the moment it runs; chkIcons' rule leaves chkStBar out,
    // so a change of chkIcons judges chk3DIcons by chk2D and chkIcons alone.
    const QList<Rule> &rules()
    {
        static const QList<Rule> table {
            { "chk2D",
                [](const ConfigDocument &d) {
                    const bool d2 = checked(d, "chk2D");
                    const bool bar = d2 && checked(d, "chkStBar");
                    QList<Enablement> out
                        = all({ "chkStBar", "chkFPS", "chkTimer", "chkKiller", "chkLAW", "chkMotd", "chkCHair" }, d2);
                    out += all({ "chkIcons", "chkLAG" }, bar);
                    out += all({ "chk3DIcons" }, bar && checked(d, "chkIcons"));
                    out += all({ "slCHairSize" }, d2 && checked(d, "chkCHair"));
                    return out;
                } },
            { "chkStBar",
                [](const ConfigDocument &d) {
                    const bool bar = checked(d, "chk2D") && checked(d, "chkStBar");
                    return all({ "chkIcons", "chkLAG" }, bar) + all({ "chk3DIcons" }, bar && checked(d, "chkIcons"));
                } },
            { "chkIcons",
                [](const ConfigDocument &d) {
                    return all({ "chk3DIcons" }, checked(d, "chk2D") && checked(d, "chkIcons"));
                } },
            { "chkCHair",
                [](const ConfigDocument &d) {
                    return all({ "slCHairSize" }, checked(d, "chk2D") && checked(d, "chkCHair"));
                } },
            { "chkFlares",
                [](const ConfigDocument &d) {
                    return all({ "txtFlSize", "txtFlFade" }, checked(d, "chkFlares"));
                } },
            { "chkBlood", [](const ConfigDocument &d) { return all({ "chkGibs" }, checked(d, "chkBlood")); } },
            { "chkHighSky",
                [](const ConfigDocument &d) {
                    return all({ "chkVTP", "chkSun" }, !checked(d, "chkHighSky"));
                } },
            { "chkMsg", [](const ConfigDocument &d) { return all({ "txtNTime" }, checked(d, "chkMsg")); } },
            { "chkA3D",
                [](const ConfigDocument &d) {
                    return all({ "sld2dsnd", "chkA3D_GP" }, checked(d, "chkA3D"));
                } },
            { "chk3dPerson",
                [](const ConfigDocument &d) {
                    return all({ "sldAngle", "sldRange" }, checked(d, "chk3dPerson"));
                } },
            { "chkPrivSv", [](const ConfigDocument &d) { return all({ "cmdClPas" }, checked(d, "chkPrivSv")); } },
        };
        return table;
    }

    const char *const numericFields[] = { "txtNTime", "txtForce", "txtFlSize", "txtFlFade", "txtHunkMegs", "txtMaxFPS",
        "txtSubdiv", "txtBrass", "txtFOV", "txtConSpeed", "txtRailIn", "txtRailOut", "txtDistCoil", "txtTrail",
        "txtMaxPackSize", "txtAwards" };

} // namespace

const QStringList &controllingControls()
{
    static const QStringList names = [] {
        QStringList out;
        for (const Rule &r : rules())
            out.append(QString::fromLatin1(r.changed));
        return out;
    }();
    return names;
}

QList<Enablement> effectsOf(QStringView control, const ConfigDocument &doc)
{
    for (const Rule &r : rules()) {
        if (control == QLatin1StringView(r.changed))
            return r.effects(doc);
    }
    return {};
}

QList<Enablement> allEffects(const ConfigDocument &doc)
{
    QList<Enablement> out;
    for (const Rule &r : rules())
        out += r.effects(doc);
    return out;
}

QString sliderLabel(const SettingRow &row, int position)
{
    // The view size's label is a fixed caption; it does not follow its slider.
    if (row.control == u"Slider1")
        position = row.initialState;
    if (row.control == u"sldHandicap" && position == 100)
        return QStringLiteral("Handicap: 100 / None");
    if (row.slider.scale == 10)
        return row.caption + QString::number(position / 10.0, 'f', 1);
    return row.caption + QString::number(position) + row.captionSuffix;
}

bool isNumericField(QStringView control)
{
    for (const char *name : numericFields) {
        if (control == QLatin1StringView(name))
            return true;
    }
    return false;
}

bool mustNotBeEmpty(QStringView control)
{
    return control == u"txtForce" || control == u"txtAwards";
}

} // namespace ControlRules
