// The help board's texts, one per control under the mouse; a few change with the control's state.
#include "SettingCatalog.h"

#include <QHash>

namespace {

enum class Variant { None, WhenClear, WhenChecked, WhenOrdinaryShadowsWithoutMarks };

struct HelpEntry
{
    const char *text;
    MsgType msgType = MsgType::Information;
    Variant when = Variant::None;
    const char *otherText = nullptr; // shown when `when` holds
    MsgType otherType = MsgType::Information;
};

const QHash<QString, HelpEntry> &helpTable()
{
    static const QHash<QString, HelpEntry> table {
        { QStringLiteral("chkPredictItems"),
            { "Sets client-side preditiction of items (powerups, weapons, ammo, etc.). Setting ON is best for net "
              "performance, but under bad lag items may jump around or disappear suddenly." } },
        { QStringLiteral("chk2D"), { "Toggles displaying of 2D graphics on the player's screen." } },
        { QStringLiteral("chk3DIcons"), { "Toggles the drawing of the 3D ammo, skin, and armor icons." } },
        { QStringLiteral("chk8Bit"), { "Toggles loading sound files as 8-bit." } },
        { QStringLiteral("chkA3D"),
            { "Sets using A3D sounds (compaible audio card required). Disabling may improve performance." } },
        { QStringLiteral("chkA3D_GP"), { "Seta geometry processing for sounds. A3D 2.0 only." } },
        { QStringLiteral("chkAnim"),
            { "Toggles player model animations. The animation frame displayed when this is disabled is rather odd, "
              "though." } },
        { QStringLiteral("chkBlood"),
            { "Enables the rendering of blood trails. Can considerably increase framerate for VooDoo 1/2/3 owners in "
              "heavy deathmatch if this option is disabled." } },
        { QStringLiteral("chkCHair"), { "Toggles the drawing of the crosshair." } },
        { QStringLiteral("chkCTex"),
            { "Enables hardware texture compression if availible. Reduces bandwidth required by textures." } },
        { QStringLiteral("chkCVAR"), { "Toggles hardware compiled vertex array rendering method if available." } },
        { QStringLiteral("chkDefer"),
            { "Defers loading of new models for players that join in the middle of a map until you are fragged. When "
              "enabled you won't get lagged when a new player joins mid-map using a model which isn't already "
              "loaded." } },
        { QStringLiteral("chkDelta"),
            { "Toggles Delta Compression", MsgType::Information, Variant::WhenClear,
                "Only disable Delta Compression if you encounter U_REMOVE problems during gameplay.",
                MsgType::Caution } },
        { QStringLiteral("chkDetTex"), { "Enables use of detail textures." } },
        { QStringLiteral("chkDLTW"),
            { "Disables rendering of dynamic lights through walls (the backsides of walls are not illuminated). 0 may "
              "decrease FPS." } },
        { QStringLiteral("chkDynLight"), { "Toggles dynamic lighting." } },
        { QStringLiteral("chkFlares"),
            { "Enables rendering of light flares on weapons and lights. Flares can hinder gameplay visibility. "
              "Disabling "
              "this feature can increase framerate." } },
        { QStringLiteral("chkFootSteps"), { "Toggles player footstep sounds." } },
        { QStringLiteral("chkForcePM"),
            { "When enabled, forces all player models to be Sarges. This may increase performance and save some "
              "memory." } },
        { QStringLiteral("chkFPS"), { "Toggles the frame rate counter." } },
        { QStringLiteral("chkFullScr"),
            { "Toggles between Window en Fullscreen mode.\r\nWarning: VooDoo 1/2/3 cards do not support window mode.",
                MsgType::Warning } },
        { QStringLiteral("chkGibs"),
            { "Toggles the rendering of gind when a player is 'gibbed'. Can provide a noticeable framerate increase if "
              "this option is disabled." } },
        { QStringLiteral("chkGLExt"),
            { "Enables OpenGL extensions.", MsgType::Information, Variant::WhenClear,
                "Enables OpenGL extensions.\r\nWarning: It is recommended you enable this option.",
                MsgType::Caution } },
        { QStringLiteral("chkHighSky"),
            { "Enables high quality sky. this should be enabled if you want to see through portals." } },
        { QStringLiteral("chkIcons"), { "Toggles the drawing of icons in status bar." } },
        { QStringLiteral("chkIHG"), { "Enables ignoring of external (i.e. windows drivers) gamma settings." } },
        { QStringLiteral("chkIPX"), { "Disables IPX network protocol." } },
        { QStringLiteral("chkKiller"),
            { "Toggles the display of the last guy to do damage to you in the upper-right corner of the screen. If you "
              "hurt yourself, that guy will be you." } },
        { QStringLiteral("chkLAG"), { "Toggles displaying the netgraph." } },
        { QStringLiteral("chkLAW"), { "Toggles the 'Low Ammo Warning' warning on the player's screen." } },
        { QStringLiteral("chkMarks"),
            { "Toggles marks on walls from impact of projectiles and explosives. Can provide noticeable framerate "
              "increase if disabled." } },
        { QStringLiteral("chkMotd"),
            { "Toggles the sending of the GL_RENDERER string to id's Message of the Day server. The server then "
              "responds back with a message of the day." } },
        { QStringLiteral("chkMsg"),
            { "Toggles the writing of console echoes and player messages in the console buffer, and therefore on the "
              "screen." } },
        { QStringLiteral("chkMultiTex"), { "Toggles hardware mutitexturing if available." } },
        { QStringLiteral("chkPrediction"),
            { "Toggles client-side player prediction. Disabling causes the client to wait for updates from the server "
              "before updating the local machine." } },
        { QStringLiteral("chkRun"), { "Toggles 'Always Run'." } },
        { QStringLiteral("chkRwrds"), { "Sets displaying of reward icons." } },
        { QStringLiteral("chkSItems"),
            { "Replaces weapons, ammo and other pickups with 2D icons (sprites). Can noticeably increase framerate on "
              "systems with a slow CPU." } },
        { QStringLiteral("chkSMP"),
            { "Enables Symmetric Multi-Processing. In workman's terms, support for dual processors.\r\nNote: Windows "
              "9x "
              "do NOT have support SMP." } },
        { QStringLiteral("chkStBar"), { "Toggles the drawing of status bar." } },
        { QStringLiteral("chkSun"),
            { "Enables rendering of Sun in the sky (as staic lighting behind clouds). Disabling may improve FPS." } },
        { QStringLiteral("chkSyncFr"),
            { "Toggles syncing to frames. Enabling basically instructs hardware to inform game that GL calls have been "
              "completed." } },
        { QStringLiteral("chkSysSnd"), { "Toggles using the sound system." } },
        { QStringLiteral("chkTimer"), { "Toggles the game timer." } },
        { QStringLiteral("chkUDP"),
            { "Enables TCP/IP network protocol.", MsgType::Information, Variant::WhenChecked,
                "Disables TCP/IP network protocol.\r\nThis will disable you from playing online!", MsgType::Caution } },
        { QStringLiteral("chkVTP"), { "Enables view through portals." } },
        { QStringLiteral("chkWModel"), { "Enable display of player's gun model." } },
        { QStringLiteral("chkWSwitch"),
            { "Toggles the automatic switching to the weapon the player has just picked up." } },
        { QStringLiteral("cbClrs"), { "Sets color bits-per-pixel. Mutually exclusive with r_depthbits." } },
        { QStringLiteral("cbColor"), { "Sets the effects color for the Railgun." } },
        { QStringLiteral("cbKHZ"), { "Sets the sampling rate, and therefore the quality of game sounds." } },
        { QStringLiteral("cbNetCon"), { "Sets communication rate between client and server." } },
        { QStringLiteral("cbPckts"),
            { "Presumably sets the number of times the client sends duplicate packets to the server to compensate for "
              "packet loss." } },
        { QStringLiteral("cbResolution"), { "Sets a video mode/resolution." } },
        { QStringLiteral("cbShadows"),
            { "Sets type of shadows rendering.", MsgType::Information, Variant::WhenOrdinaryShadowsWithoutMarks,
                "Sets type of shadows rendering.\r\nTo enable Ordinary Shadows you must set Marks On Walls on.",
                MsgType::Caution } },
        { QStringLiteral("cbTexDetail"), { "Sets maximum texture size." } },
        { QStringLiteral("cbTexMode"), { "Sets texture filtering mode." } },
        { QStringLiteral("cbTexQual"), { "Sets texture color depth." } },
        { QStringLiteral("cbWDetail"),
            { "Sets Level-Of-Detail bias. An example would be the complexity of weapon rendering." } },
        { QStringLiteral("optLighting(0)"), { "Toggles rendering of lightmaps with rendering textures." } },
        { QStringLiteral("optLighting(1)"), { "Toggles rendering of lightmaps without rendering textures." } },
        { QStringLiteral("slCHairSize"), { "Sets the size of the crosshair." } },
        { QStringLiteral("sld2dsnd"), { "Sets relative 2D (center channel) sound volume for A3D." } },
        { QStringLiteral("sldEVol"), { "Sets the game sounds volume level." } },
        { QStringLiteral("sldGamma"), { "Sets in-game gamma levels." } },
        { QStringLiteral("sldHandicap"),
            { "Sets the maximum health of the player when spawned. Setting to a lower number while alive causes the "
              "health to slowly erode. Values of 0 and those greater than 100 are ignored." } },
        { QStringLiteral("sldMix"),
            { "Set sound mixahead value. Different values may help fix stuttering problems on some sound cards." } },
        { QStringLiteral("sldMsSen"), { "Set mouse sensitivity." } },
        { QStringLiteral("sldMVol"), { "Presumably sets the music volume level." } },
        { QStringLiteral("txtDistCoil"), { "Sets the distance between the coils when the Railgun is fired." } },
        { QStringLiteral("txtMaxPackSize"), { "Sets maximum client packet size." } },
        { QStringLiteral("txtRailIn"), { "Sets the inner trail width when the Railgun is fired." } },
        { QStringLiteral("txtRailOut"), { "Sets the outer trail width when the Railgun is fired." } },
        { QStringLiteral("txtTrail"), { "Sets the amount of time the Railgun slug trail is visible." } },
        { QStringLiteral("txtBrass"),
            { "Sets how long weapon effects (like the ejected shells from the shotgun) will be rendered. Setting to 0 "
              "disables this effect entirely." } },
        { QStringLiteral("txtConSpeed"), { "Set the console scroll speed. Value in milliseconds" } },
        { QStringLiteral("txtFlFade"),
            { "Set lens flare fading rate, higher may improve FPS, but flare effects will fade away faster." } },
        { QStringLiteral("txtFlSize"), { "Set lens flare size (smaller will increase FPS)." } },
        { QStringLiteral("txtForce"),
            { "Sets the amount of time a killed player will be forceably respawned. (0 = disabled)" } },
        { QStringLiteral("txtFOV"),
            { "Sets the size of the field of view. Values over 90 do not prevent the gun model from appearing. Maximum "
              "value is 160." } },
        { QStringLiteral("txtHunkMegs"), { "Sets the amount of memory that QUAKE3.EXE will allocate for itself." } },
        { QStringLiteral("txtMaxFPS"), { "Sets the frames/second cap. Disabled when timedemo is 1." } },
        { QStringLiteral("txtName"), { "Player Name / Nick whatever you call it." } },
        { QStringLiteral("txtNTime"),
            { "Sets the amount of time console messages will appear on the screen. When set to 0 no messages "
              "appear." } },
        { QStringLiteral("txtSubdiv"),
            { "Sets the number of subdivisions used in rendering curved surfaces; increasing this number will improve "
              "FPS (max 999)." } },
        { QStringLiteral("cmdModel"), { "Press this button to select player model." } },
    };
    return table;
}

} // namespace

std::optional<HelpText> SettingCatalog::help(QStringView control, int state, bool marksOn) const
{
    const auto it = helpTable().constFind(control.toString());
    if (it == helpTable().constEnd())
        return std::nullopt;
    const HelpEntry &e = *it;
    bool other = false;
    switch (e.when) {
    case Variant::None:
        break;
    case Variant::WhenClear:
        other = state == 0;
        break;
    case Variant::WhenChecked:
        other = state != 0;
        break;
    case Variant::WhenOrdinaryShadowsWithoutMarks:
        other = state == 1 && !marksOn;
        break;
    }
    if (other)
        return HelpText { QString::fromLatin1(e.otherText), e.otherType };
    return HelpText { QString::fromLatin1(e.text), e.msgType };
}

QStringList SettingCatalog::controlsWithoutHelp() const
{
    QStringList out;
    for (const SettingRow &r : m_rows) {
        if (!helpTable().contains(r.control) && r.kind != ControlKind::OptionPair)
            out.append(r.control);
    }
    return out;
}
