#include "SettingCatalog.h"

#include "CfgText.h"

namespace {

// Short builders keep the table one row a line, in the order the reader tests the rows.
struct Rule
{
    std::optional<double> upper, fallback;
};
const Rule none {};
Rule U(double u)
{
    return { u, std::nullopt };
}
Rule F(double f)
{
    return { std::nullopt, f };
}
Rule UF(double u, double f)
{
    return { u, f };
}

class Builder
{
public:
    QList<SettingRow> rows;
    Area area = Area::General;
    QString page;
    QString subPage;

    SettingRow &add(
        const char *name, const char *control, ControlKind kind, const char *caption, Mapping mapping, Rule rule = none)
    {
        SettingRow r;
        r.name = QString::fromLatin1(name);
        r.area = area;
        r.page = page;
        r.subPage = subPage;
        r.control = QString::fromLatin1(control);
        r.kind = kind;
        r.caption = QString::fromLatin1(caption);
        r.mapping = mapping;
        r.rule = { rule.upper, rule.fallback };
        r.snapshot = mapping != Mapping::ShownOnly;
        rows.append(r);
        return rows.last();
    }
    SettingRow &check(const char *name, const char *control, const char *caption, Rule rule = none)
    {
        return add(name, control, ControlKind::CheckBox, caption, Mapping::CheckDirect, rule);
    }
    SettingRow &inverted(const char *name, const char *control, const char *caption, Rule rule)
    {
        return add(name, control, ControlKind::CheckBox, caption, Mapping::CheckInverted, rule);
    }
    SettingRow &list(const char *name, const char *control, const char *caption, Mapping mapping, QStringList entries,
        int initial, Rule rule = none)
    {
        SettingRow &r = add(name, control, ControlKind::List, caption, mapping, rule);
        r.entries = std::move(entries);
        r.initialState = initial;
        return r;
    }
    SettingRow &slider(const char *name, const char *control, const char *caption, Mapping mapping, SliderRange range,
        int initial, Rule rule = none)
    {
        SettingRow &r = add(name, control, ControlKind::Slider, caption, mapping, rule);
        r.slider = range;
        r.initialState = initial;
        return r;
    }
    SettingRow &text(const char *name, const char *control, const char *caption, Mapping mapping, const char *initial,
        Rule rule = none)
    {
        SettingRow &r = add(name, control, ControlKind::TextField, caption, mapping, rule);
        r.initialText = QString::fromLatin1(initial);
        return r;
    }
};

QStringList entries(std::initializer_list<const char *> items)
{
    QStringList out;
    for (const char *item : items)
        out.append(QString::fromLatin1(item));
    return out;
}

QList<SettingRow> buildRows()
{
    Builder b;
    using M = Mapping;
    using K = ControlKind;

    b.area = Area::General;
    b.page = QStringLiteral("Client");
    b.text("name", "txtName", "Name:", M::Name, "UnnamedPlayer");
    b.slider("handicap", "sldHandicap", "Handicap: ", M::SliderInt, { 1, 100, 1, 5, 1 }, 100);
    b.text("g_forcerespawn", "txtForce", "Player Force Respawn", M::TextNumber, "20", F(20));
    b.add("model", "cmdModel", K::Button, "Player Model:", M::Model).initialText = QStringLiteral("sarge/default");
    SettingRow &awards = b.add("g_spAwards", "txtAwards", K::TextField, "Awards", M::Awards);
    awards.count = 6;
    awards.initialText = QStringLiteral("0");
    b.add("g_spVideos", "chkTiers", K::CheckBox, "Videos", M::Tiers).count = 8;
    b.page = QStringLiteral("Sound / Network");
    b.slider("s_volume", "sldEVol", "Effect Volume: ", M::SliderTenths, { 0, 10, 10, 1, 1 }, 10, UF(1, 0.7));
    b.slider("s_musicvolume", "sldMVol", "Music Volume: ", M::SliderTenths, { 0, 10, 10, 1, 1 }, 10, UF(1, 0.7));
    b.slider("s_mixahead", "sldMix", "Mixahead: ", M::SliderTenths, { 0, 10, 10, 1, 1 }, 2, UF(1, 0.2));
    b.list("s_khz", "cbKHZ", "Sample Rate:", M::Khz, entries({ "11 KHz", "22 KHz" }), 0);
    b.check("cg_footsteps", "chkFootSteps", "Enable Player Footsteps", UF(1, 1));
    b.check("s_usingA3D", "chkA3D", "Enabled Aureal 3D Support", UF(1, 0));
    b.slider("s_2dvolume", "sld2dsnd", "2D Sound: ", M::SliderTenths, { 0, 10, 10, 1, 1 }, 7, UF(1, 0.7));
    b.check("s_geometry", "chkA3D_GP", "Geometry Processing", UF(1, 0));
    b.inverted("cl_nodelta", "chkDelta", "Enable Delta Compression", UF(1, 0));
    b.inverted("cg_nopredict", "chkPrediction", "Enable Client-side Player Prediction", UF(1, 0));
    b.check("net_noipx", "chkIPX", "Disable IPX Network Protocol", UF(1, 0));
    b.check("net_noudp", "chkUDP", "Disable UDP Network Protocol", UF(1, 0));
    b.list("cl_packetdup", "cbPckts", "Number of Dublicate Packets to Send:", M::Position,
        entries({ "0", "1", "2", "3", "4", "5" }), 1, UF(5, 1));
    b.list("rate", "cbNetCon", "Connection:", M::ItemValue,
         entries({ "28.8K or less", "33.6K", "56K", "ISDN", "Lan/Cable/xDSL" }), 4)
        .itemValues
        = { 2500, 3000, 4000, 5000, 25000 };
    b.page = QStringLiteral("Client");
    b.check("cg_deferplayers", "chkDefer", "Defer Players");
    b.page = QStringLiteral("Sound / Network");
    b.check("cg_predictItems", "chkPredictItems", "Items Prediction");
    b.text("cl_maxpackets", "txtMaxPackSize", "Maximum client packet size:", M::TextTrimmed, "30");

    b.area = Area::Renderer;
    b.page = QStringLiteral("Renderer");
    b.add("r_lightmap", "optLighting", K::OptionPair, "Lightmap Lighting", M::Position, UF(1, 1)).entries
        = entries({ "Lightmap Lighting", "Vertex Lighting" });
    b.check("com_blood", "chkBlood", "Show Blood Trails", UF(1, 1));
    b.check("cg_gibs", "chkGibs", "Show Gibs", UF(1, 1));
    b.check("r_allowextensions", "chkGLExt", "Enable GL Extensions", UF(1, 1));
    b.check("r_dynamiclight", "chkDynLight", "Enable Dynamic Lighting", UF(1, 1));
    b.check("r_dlightbacks", "chkDLTW", "Dynamic Light Through Walls", UF(1, 0));
    b.check("cg_drawrewards", "chkRwrds", "Draw Rewards", UF(1, 1));
    b.text("cg_brasstime", "txtBrass", "Ejecting Brass:", M::TextNumber, "1250", F(1250));
    b.check("cg_forcemodel", "chkForcePM", "Force Player Models", UF(1, 0));
    b.check("r_showsky", "chkHighSky", "High Quality Sky", UF(1, 0));
    b.inverted("r_noportals", "chkVTP", "View Through Portals", UF(1, 0));
    b.check("r_drawsun", "chkSun", "Enable Sun Effect", UF(1, 0));
    b.check("cg_marks", "chkMarks", "Marks on Walls", UF(1, 1));
    b.check("r_flares", "chkFlares", "Show Light Flares", UF(1, 0));
    b.text("r_flaresize", "txtFlSize", "Flare Size:", M::TextNumber, "40", F(40));
    b.text("r_flarefade", "txtFlFade", "Flare Fade:", M::TextNumber, "7", F(7));
    b.check("cg_simpleitems", "chkSItems", "Show Simple Items", UF(1, 0));
    b.check("r_finish", "chkSyncFr", "Sync Every Frame", UF(1, 1));
    b.check("r_fullscreen", "chkFullScr", "Full Screen Mode", UF(1, 1));
    b.check("r_smp", "chkSMP", "Enable SMP Acceleration", UF(1, 0));
    b.check("r_swapinterval", "chkFrSwap", "Enable Frame Swapping", UF(1, 0));
    b.check("r_ignorehwgamma", "chkIHG", "Ignore Hardware Gamma", UF(1, 0));
    b.check("r_nocurves", "chkCurve", "Disable Curve Rendering", UF(1, 0));
    b.check("r_ext_compiled_vertex_array", "chkCVAR", "Enable Compiled Vertex Array Rendering", UF(1, 1));
    b.check("r_ext_multitexture", "chkMultiTex", "Enable Multitexturing", UF(1, 1));
    b.check("r_ext_compress_textures", "chkCTex", "Compress Textures", UF(1, 1));
    b.check("r_detailtextures", "chkDetTex", "Use Detailed Textures", U(1));
    b.text("scr_conspeed", "txtConSpeed", "Console Scroll Speed:", M::TextNumber, "3", F(3));
    b.text("cg_fov", "txtFOV", "Field of View (FOV):", M::TextNumber, "90", F(90));
    b.text("com_hunkmegs", "txtHunkMegs", "Hunk Megs:", M::TextNumber, "56", F(56));
    b.text("com_maxfps", "txtMaxFPS", "Max FPS:", M::TextNumber, "85", F(85));
    b.text("r_subdivisions", "txtSubdiv", "Subdivisions:", M::TextNumber, "4", UF(999, 4));
    b.list("r_texturemode", "cbTexMode", "Texture mode:", M::ByName,
        entries(
            { "GL Nearest", "GL Nearest MipMap", "GL Linear", "GL Linear MipMap Nearest", "GL Linear MipMap Linear" }),
        3);
    b.list("r_lodbias", "cbWDetail", "Model Detail:", M::Position, entries({ "High", "Default", "Low" }), 1, UF(2, 1));
    b.list("cg_shadows", "cbShadows", "Type of shadow:", M::Position,
        entries({ "No Shadows", "Ordinary Shadows", "Stencil Buffer Shadows", "Very Dark Stencil Buffer Shadows" }), 1,
        UF(3, 1));
    b.list("r_texturebits", "cbTexQual", "Texture Quality:", M::BitRanges,
        entries({ "Compressed", "16-bit", "32-bit" }), 0);
    b.list("r_colorbits", "cbClrs", "Color Depth:", M::BitRanges, entries({ "Default", "16-bit", "32-bit" }), 0);
    b.list("r_picmip", "cbTexDetail", "Texture Detail:", M::Position, entries({ "High", "Default", "Low", "Lowest" }),
        1, UF(3, 1));
    b.list("r_mode", "cbResolution", "Resolution:", M::Position,
        entries({ "320x240", "400x300", "512x384", "640x480", "800x600", "856x480", "960x720", "1024x768", "1152x864",
            "1280x1024", "1600x1200", "2048x1536" }),
        3, UF(10, 2));
    b.slider("r_gamma", "sldGamma", "Gamma: ", M::SliderTenths, { 0, 30, 10, 5, 1 }, 10);
    b.check("cg_noplayeranims", "chkAnim", "No Player Animations", UF(1, 0));

    b.area = Area::HudDisplay;
    b.page = QStringLiteral("HUD Display");
    b.check("cg_draw2d", "chk2D", "Show 2D", UF(1, 1));
    b.check("cg_drawstatus", "chkStBar", "Show Status Bar (health, ammo, armor)", UF(1, 1));
    b.check("cg_drawicons", "chkIcons", "Show Icons", UF(1, 1));
    b.check("cg_draw3dicons", "chk3DIcons", "Show 3D Icons", UF(1, 1));
    b.check("cg_lagometer", "chkLAG", "Show Lag-O-Meter", UF(1, 1));
    b.check("cg_drawfps", "chkFPS", "Show FPS", UF(1, 1));
    b.check("cg_drawtimer", "chkTimer", "Show Timer");
    b.check("cl_motd", "chkMotd", "Show Message of The Day", UF(1, 1));
    b.check("cg_drawcrosshair", "chkCHair", "Show Crosshair", UF(1, 1));
    b.slider("cg_crosshairsize", "slCHairSize", "Crosshair Size: ", M::SliderInt, { 5, 60, 1, 5, 1 }, 24);
    b.check("cg_drawattacker", "chkKiller", "Show Attacker", UF(1, 1));
    b.check("cg_drawammowarning", "chkLAW", "Show Low Ammo Warning", UF(1, 1));
    b.check("cg_drawgun", "chkWModel", "Show Weapon Model", UF(1, 1));
    b.inverted("cl_noprint", "chkMsg", "Show Messages for", UF(1, 0));
    b.text("con_notifytime", "txtNTime", "sec", M::TextNumber, "3", F(3));

    b.area = Area::Railgun;
    b.page = QStringLiteral("Railgun");
    b.list("color", "cbColor", "Effect Color:", M::Position,
        entries({ "Blue", "Green", "Cyan", "Red", "Magenta", "Yellow", "White" }), 0, UF(6, 0));
    b.text("r_railcorewidth", "txtRailIn", "- Inner Trail Width", M::TextTrimmed, "16", U(9999));
    b.text("r_railsegmentlength", "txtDistCoil", "- Distance Between Coils", M::TextTrimmed, "64", U(9999));
    b.text("r_railwidth", "txtRailOut", "- Outer Trail Width", M::TextTrimmed, "128", U(9999));
    b.text("cg_railtrailtime", "txtTrail", "- Railgun Slug is Visible (msec)", M::TextTrimmed, "400", U(9999));

    b.area = Area::Controls;
    b.page = QStringLiteral("Control");
    b.subPage = QStringLiteral("Move");
    b.check("cl_run", "chkRun", "Enable Always &Run", UF(1, 0));
    b.subPage = QStringLiteral("Shoot");
    b.check("cg_autoswitch", "chkWSwitch", "Automatic Weapon &Switching", UF(1, 0));
    b.subPage = QStringLiteral("Move");
    b.slider("sensitivity", "sldMsSen", "Mouse Sensitivity: ", M::Sensitivity, { 10, 300, 10, 10, 10 }, 90);
    b.subPage.clear();

    // Shown on the pages but never read from or written to a file.
    b.area = Area::ShownOnly;
    b.page = QStringLiteral("Sound / Network");
    b.add("s_initsound", "chkSysSnd", K::CheckBox, "Use Sound System", M::ShownOnly).snapshot = true;
    b.add("s_loadas8bit", "chk8Bit", K::CheckBox, "Load Sounds as 8-bit", M::ShownOnly).snapshot = true;
    b.page = QStringLiteral("Client");
    b.slider("cg_viewsize", "Slider1", "View Size: ", M::ShownOnly, { 30, 100, 1, 5, 1 }, 100);
    b.add("", "chk3dPerson", K::CheckBox, "Third Person View", M::ShownOnly);
    b.slider("cg_thirdPersonRange", "sldRange", "3rd Person Range: ", M::ShownOnly, { 0, 1000, 1, 10, 1 }, 40);
    b.slider("cg_thirdPersonAngle", "sldAngle", "3rd Person Angle: ", M::ShownOnly, { 0, 360, 1, 10, 5 }, 0);
    b.slider("con_notifytime", "sldTCT", "Team Chat Time: ", M::ShownOnly, { 0, 20, 1, 1, 1 }, 3).captionSuffix
        = QStringLiteral(" min");
    b.page = QStringLiteral("Server");
    b.text("", "txtHost", "Hostname:", M::ShownOnly, "noname");
    b.text("", "txtMSV1", "Master Server 1", M::ShownOnly, "master.quake3arena.com");
    b.add("sv_privateClients", "chkPrivSv", K::CheckBox, "Private Server", M::ShownOnly);
    b.add("sv_pure", "chkPure", K::CheckBox, "Pure Server", M::ShownOnly);
    b.add("cl_allowdownload", "chkAutoDnld", K::CheckBox, "Allow Clients to Downloading", M::ShownOnly);
    b.add("", "cmdClPas", K::Button, "Set Client Password", M::ShownOnly).count = 0;
    return b.rows;
}

// The writer's order inside each area.
const char *const generalOrder[]
    = { "name", "handicap", "g_forcerespawn", "model", "g_spAwards", "g_spVideos", "s_volume", "s_musicvolume",
          "s_mixahead", "s_khz", "cg_footsteps", "s_usingA3D", "s_2dvolume", "s_geometry", "cl_nodelta", "cg_nopredict",
          "net_noipx", "net_noudp", "cl_packetdup", "rate", "cg_deferplayers", "cg_predictItems", "cl_maxpackets" };
const char *const rendererOrder[] = { "r_lightmap", "com_blood", "cg_gibs", "r_allowextensions", "r_dynamiclight",
    "r_dlightbacks", "cg_drawrewards", "cg_forcemodel", "r_showsky", "r_noportals", "r_drawsun", "cg_marks",
    "cg_simpleitems", "r_finish", "r_fullscreen", "r_smp", "r_ignorehwgamma", "r_swapinterval", "r_nocurves",
    "r_ext_compiled_vertex_array", "r_ext_multitexture", "r_ext_compress_textures", "r_detailtextures", "r_texturemode",
    "r_picmip", "r_lodbias", "r_mode", "cg_shadows", "r_colorbits", "r_texturebits", "r_flares", "r_flaresize",
    "r_flarefade", "com_hunkmegs", "com_maxfps", "r_subdivisions", "scr_conspeed", "cg_fov", "cg_brasstime", "r_gamma",
    "cg_noplayeranims" };
const char *const controlsOrder[] = { "cg_autoswitch", "cl_run", "sensitivity" };
const char *const hudOrder[] = { "cg_draw2d", "cg_drawstatus", "cg_drawicons", "cg_draw3dicons", "cg_lagometer",
    "cg_drawfps", "cg_drawtimer", "cg_drawattacker", "cg_drawammowarning", "cl_motd", "cl_noprint", "cg_drawgun",
    "cg_drawcrosshair", "cg_crosshairsize", "con_notifytime" };
const char *const railgunOrder[]
    = { "color", "r_railcorewidth", "r_railwidth", "cg_railtrailtime", "r_railsegmentlength" };

} // namespace

const SettingCatalog &SettingCatalog::instance()
{
    static const SettingCatalog catalog;
    return catalog;
}

SettingCatalog::SettingCatalog()
    : m_rows(buildRows())
{
    for (int i = 0; i < m_rows.size(); ++i) {
        SettingRow &r = m_rows[i];
        r.firstSlot = m_slotCount;
        m_slotCount += r.count;
        if (r.isStored())
            m_storedByName.insert(CfgText::asciiLower(r.name), i);
    }
    const auto resolve = [this](auto &names) {
        QList<int> order;
        for (const char *name : names)
            order.append(indexOfSetting(QString::fromLatin1(name)));
        return order;
    };
    m_writeOrder = { resolve(generalOrder), resolve(rendererOrder), resolve(controlsOrder), resolve(hudOrder),
        resolve(railgunOrder), {} };
}

int SettingCatalog::indexOfSetting(QStringView name) const
{
    // Called for every setting line of a file: lower-case into a buffer that is reused.
    thread_local QString lowered;
    lowered.resize(name.size());
    char16_t *out = reinterpret_cast<char16_t *>(lowered.data());
    for (const QChar c : name)
        *out++ = (c >= u'A' && c <= u'Z') ? char16_t(c.unicode() + 32) : c.unicode();
    return m_storedByName.value(lowered, -1);
}

int SettingCatalog::indexOfControl(QStringView control) const
{
    for (int i = 0; i < m_rows.size(); ++i) {
        if (m_rows[i].control == control)
            return i;
    }
    return -1;
}

const QList<int> &SettingCatalog::writeOrder(Area area) const
{
    return m_writeOrder.at(int(area));
}

bool SettingCatalog::inScope(Area area, FileScope scope)
{
    switch (scope) {
    case FileScope::Whole:
        return area != Area::ShownOnly;
    case FileScope::Renderer:
        return area == Area::Renderer;
    case FileScope::Controls:
        return area == Area::Controls;
    case FileScope::HudDisplay:
        return area == Area::HudDisplay;
    case FileScope::Railgun:
        return area == Area::Railgun;
    }
    return false;
}
