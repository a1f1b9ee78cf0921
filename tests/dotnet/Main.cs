using System;

// tvapic_dotnet_tests MODE ARGUMENTS
//   exports LIBRARY   Native declares exactly the library's exports
//   inprocess         the object layer against the simulated host, in this process
//   remote TVHOST     the remote client against a tvhost started for the test
static class Program
{
    static int Main(string[] args)
    {
        string mode = args.Length > 0 ? args[0] : "";
        try
        {
            if (mode == "exports" && args.Length == 2) ExportsTest.Run(args[1]);
            else if (mode == "inprocess" && args.Length == 1) InProcessTest.Run();
            else if (mode == "remote" && args.Length == 2) RemoteTest.Run(args[1]);
            else
            {
                Console.Error.WriteLine("usage: tvapic_dotnet_tests exports LIBRARY | inprocess | remote TVHOST");
                return 2;
            }
        }
        catch (Exception e)
        {
            Check.That(false, "the test threw " + e);
        }
        return Check.Summary();
    }
}
