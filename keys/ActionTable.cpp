#include "ActionTable.h"

namespace ActionTable {

const std::array<ActionInfo, Count> &actions()
{
    static constexpr std::array<ActionInfo, Count> table { {
        { "Move", "Run / Walk", "+speed" },
        { "Move", "Move Forward", "+forward" },
        { "Move", "Move Backward", "+back" },
        { "Move", "Step Left", "+moveleft" },
        { "Move", "Step Right", "+moveright" },
        { "Move", "Jump / Up", "+moveup" },
        { "Move", "Crouch / Down", "+movedown" },
        { "Move", "Turn Left", "+left" },
        { "Move", "Turn Right", "+right" },
        { "Move", "Sidestep / Turn", "+strafe" },
        { "Shoot", "Attack", "+attack" },
        { "Shoot", "Next Weapon", "weapnext" },
        { "Shoot", "Previews Weapon", "weapprev" },
        { "Shoot", "Guantlet", "weapon 1" },
        { "Shoot", "Machinegun", "weapon 2" },
        { "Shoot", "Shotgun", "weapon 3" },
        { "Shoot", "Grenade Launcher", "weapon 4" },
        { "Shoot", "Rocket Launcher", "weapon 5" },
        { "Shoot", "Lighting", "weapon 6" },
        { "Shoot", "Railgun", "weapon 7" },
        { "Shoot", "Plasmagun", "weapon 8" },
        { "Shoot", "BFG", "weapon 9" },
        { "Shoot", "Grappling Hook", "weapon 10" },
        { "Look", "Look Up", "+lookup" },
        { "Look", "Look Down", "+lookdown" },
        { "Look", "Center View", "centerview" },
        { "Look", "Zoom", "+zoom" },
        { "Misc", "Show Scores", "+scores" },
        { "Misc", "Use Item", "+button2" },
        { "Misc", "Gesture", "+button3" },
        { "Misc", "Chat", "messagemode" },
        { "Misc", "Chat - Team", "messagemode2" },
        { "Misc", "Chat - Target", "messagemode3" },
        { "Misc", "Chat - Attacker", "messagemode4" },
        { "Misc", "Save Screenshot", "screenshot" },
        { "Misc", "Toggle Thirdperson", "toggle cg_thirdperson" },
        { "Misc", "Toggle Console", "toggleconsole" },
    } };
    return table;
}

QString caption(int index)
{
    return QString::fromLatin1(actions().at(index).caption);
}

QString command(int index)
{
    return QString::fromLatin1(actions().at(index).command);
}

QString quotedCommand(int index)
{
    return u'"' + command(index) + u'"';
}

} // namespace ActionTable
