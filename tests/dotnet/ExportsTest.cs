using System;
using System.Collections.Generic;
using System.Diagnostics;
using System.Reflection;
using TvApic;

// Native's DllImport declarations against the library's dynamic symbol table.
static class ExportsTest
{
    public static void Run(string library)
    {
        var exported = new HashSet<string>(DefinedFunctions(library));
        var declared = new HashSet<string>();
        var twice = new List<string>();
        foreach (MethodInfo m in typeof(Native).GetMethods(BindingFlags.Public | BindingFlags.NonPublic | BindingFlags.Static))
        {
            if ((m.Attributes & MethodAttributes.PinvokeImpl) != 0 && !declared.Add(m.Name)) twice.Add(m.Name);
        }
        Check.Equal(0, twice.Count, "declarations of one export overloaded (" + string.Join(", ", twice) + ")");
        Check.That(exported.Count > 9000, "the library exports its functions (" + exported.Count + ")");
        var missing = new List<string>(exported);
        missing.RemoveAll(declared.Contains);
        var extra = new List<string>(declared);
        extra.RemoveAll(exported.Contains);
        Console.WriteLine(declared.Count + " declarations for " + exported.Count + " exports");
        Check.Equal(0, missing.Count, "exports Native does not declare (" + string.Join(", ", missing.GetRange(0, Math.Min(5, missing.Count))) + ")");
        Check.Equal(0, extra.Count, "declarations the library does not export (" + string.Join(", ", extra.GetRange(0, Math.Min(5, extra.Count))) + ")");
    }

    static IEnumerable<string> DefinedFunctions(string library)
    {
        var nm = new ProcessStartInfo("nm", "-D --defined-only \"" + library + "\"")
        {
            RedirectStandardOutput = true,
            UseShellExecute = false,
        };
        using (Process p = Process.Start(nm))
        {
            string[] lines = p.StandardOutput.ReadToEnd().Split('\n');
            p.WaitForExit();
            Check.Equal(0, p.ExitCode, "nm reads " + library);
            foreach (string line in lines)
            {
                string[] words = line.Split(new[] { ' ' }, StringSplitOptions.RemoveEmptyEntries);
                if (words.Length == 3 && (words[1] == "T" || words[1] == "W")) yield return words[2];
            }
        }
    }
}
