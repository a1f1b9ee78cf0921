namespace TvApic
{
    /// <summary>Every export of the library, as exported (the declarations are
    /// generated from the catalogue). Returned text and vectors are the
    /// caller's: TvApic.Objects converts and frees them.</summary>
    public static partial class Native
    {
        /// <summary>The library's name as the runtime probes for it:
        /// tvAPIC.dll on Windows, libtvAPIC.so elsewhere.</summary>
        public const string Library = "tvAPIC";
    }
}
