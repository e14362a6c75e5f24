// SPDX-License-Identifier: MIT
// Events reach the methods of a plain script object, and the handler may call back.
var helper = new ActiveXObject("RavloTest.Events");
var cSchedMan = new ActiveXObject("RavloScheduler.clsSchedMan");
var sHeard = "", lDepth = 0;
var handler = {
    ShowHelpEvent: function () {
        sHeard += "help;";
        if (++lDepth < 3) cSchedMan.ShowHelp();
    }
};
var lKey = helper.Connect(cSchedMan, handler);
cSchedMan.ShowHelp();
if (sHeard !== "help;help;help;") {
    WScript.Echo("heard " + sHeard);
    WScript.Quit(1);
}
helper.Disconnect(lKey);
cSchedMan.ShowHelp();
if (lDepth !== 3) WScript.Quit(1);
WScript.Echo("ALL OK");
