using System;
using System.Runtime.InteropServices;
using TvApic.Objects;

namespace TvApic
{
    /// <summary>The simulated application (libtvsim), for running the binding
    /// outside the application: Start() before the first call. Inside the
    /// application the calls reach it, and none of this is used.</summary>
    public static class SimulatedHost
    {
        const string Library = "tvsim";   // libtvsim.so beside TvApic.dll, or on the loader's path
        static readonly object gate = new object();
        static bool started;

        [DllImport(Library)] static extern void tvsim_start();
        [DllImport(Library)] static extern void tvsim_stop();

        /// <summary>Starts the simulated application in this process, once.</summary>
        public static void Start()
        {
            lock (gate)
            {
                if (started) return;
                try { tvsim_start(); }
                catch (DllNotFoundException e)
                {
                    throw new DllNotFoundException("the simulated host (libtvsim) was not found: place TvApic.dll "
                                                   + "beside it and libtvAPIC, or put their folder on the loader's path", e);
                }
                started = true;
            }
        }

        /// <summary>Stops it; every object of the binding must have been disposed first.</summary>
        public static void Stop()
        {
            lock (gate)
            {
                if (!started) return;
                if (ApiObject.Outstanding > 0)
                    throw new InvalidOperationException(ApiObject.Outstanding + " objects still hold references: dispose "
                                                        + "them before stopping the simulated host, which frees what they point to");
                tvsim_stop();
                started = false;
            }
        }

        // The host platform's stand-in answers whether a root is installed; the
        // application's own tvapi has no such function.
        [DllImport("tvapi")] static extern int tvapi_standin_has_root([MarshalAs(UnmanagedType.LPStr)] string root);

        static bool? standIn;   // null until asked: whether the host's libraries are the stand-ins

        /// <summary>Before a call of a rooted interface: NoApplicationException
        /// when the process has the stand-in and nothing is installed.</summary>
        internal static void Require(string root, string export)
        {
            if (standIn == false) return;
            bool installed;
            try { installed = tvapi_standin_has_root(root) != 0; standIn = true; }
            catch (EntryPointNotFoundException) { standIn = false; return; }
            catch (DllNotFoundException) { standIn = false; return; }
            if (!installed) throw new NoApplicationException(export);
        }
    }

    /// <summary>A call of the application's (or its transfer service's) in a
    /// process that has none: outside the application, SimulatedHost.Start() first.</summary>
    public sealed class NoApplicationException : InvalidOperationException
    {
        public NoApplicationException(string export)
            : base(export + ": no application in this process. Outside the application, start the simulated host "
                   + "first: TvApic.SimulatedHost.Start()") { }
    }
}
