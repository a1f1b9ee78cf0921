using System;
using System.Collections.Generic;

// The tests' few assertions: each failure is printed with what was expected
// and what came, and the run ends with "N passed, N failed".
static class Check
{
    static int passed, failed;

    public static void That(bool condition, string what)
    {
        if (condition) { ++passed; return; }
        ++failed;
        Console.WriteLine("FAILED: " + what);
    }

    public static void Equal<T>(T expected, T actual, string what)
    {
        That(EqualityComparer<T>.Default.Equals(expected, actual),
             what + ": expected " + Show(expected) + ", got " + Show(actual));
    }

    public static void Sequence<T>(IList<T> expected, IList<T> actual, string what)
    {
        bool same = actual != null && expected.Count == actual.Count;
        for (int n = 0; same && n < expected.Count; ++n) same = EqualityComparer<T>.Default.Equals(expected[n], actual[n]);
        That(same, what + ": expected [" + Join(expected) + "], got " + (actual == null ? "null" : "[" + Join(actual) + "]"));
    }

    static string Join<T>(IList<T> items)
    {
        var shown = new List<string>();
        foreach (T item in items) shown.Add(Show(item));
        return string.Join(", ", shown);
    }

    static string Show(object value) { return value == null ? "null" : value is string ? "\"" + value + "\"" : value.ToString(); }

    public static int Summary()
    {
        Console.WriteLine(passed + " passed, " + failed + " failed");
        return failed == 0 && passed > 0 ? 0 : 1;
    }
}
