// Shows registers and the current position of a controller, and writes a position register. Not run by this project's
// tests, which have no .NET. For a console project of .NET on Windows, in the width of the component; late bound, so it
// needs no reference.
using System;

static class Program
{
    const int NUMREG_REAL = 1, POSREG = 2, CURPOS = 3;

    [STAThread] // the thread of the apartment in which Core, table and items live
    static int Main(string[] arguments)
    {
        dynamic core = Activator.CreateInstance(Type.GetTypeFromProgID("Orif.Core", true));
        core.DebugLog = true; // so that the trail has the reason if there is no connection
        if (!core.Connect(arguments.Length > 0 ? arguments[0] : "demo"))
        {
            Console.Error.WriteLine(core.GetDebugMessages());
            return 1;
        }
        core.DebugLog = false;

        dynamic table = core.DataTable;
        dynamic reals = table.AddNumReg(NUMREG_REAL, 1, 3);
        dynamic positions = table.AddPosReg(POSREG, 1, 1, 1);
        dynamic arm = table.AddCurPos(CURPOS, 1);
        if (reals == null || positions == null || arm == null || !table.Refresh())
        {
            Console.Error.WriteLine(core.DebugMessage);
            return 1;
        }

        for (int i = reals.StartIndex; i <= reals.EndIndex; ++i)
        {
            Console.WriteLine($"R[{i}] = {reals.Value[i]}");
        }
        object[] place = arm.Xyzwpr; // null if there is no position
        Console.WriteLine(string.Join(" ", place));

        // The arm's position, lifted by 50 mm.
        place[2] = (float)place[2] + 50;
        if (positions.SetValueXyzwpr(1, place, arm.Config, 0, arm.UT)) return 0;
        Console.Error.WriteLine(core.DebugMessage);
        return 1;
    }
}
