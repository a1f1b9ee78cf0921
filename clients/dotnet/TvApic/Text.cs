using System;
using System.Runtime.InteropServices;

namespace TvApic
{
    /// <summary>The C runtime the library allocates returned text and vector
    /// contents from: the universal C runtime on Windows, the C library elsewhere.</summary>
    public static class CRuntime
    {
        [DllImport("ucrtbase", EntryPoint = "free", CallingConvention = CallingConvention.Cdecl)]
        static extern void FreeUcrt(IntPtr block);

        [DllImport("libc", EntryPoint = "free", CallingConvention = CallingConvention.Cdecl)]
        static extern void FreeLibc(IntPtr block);

        // Mono maps "libc" to the C library; a runtime that does not finds it by its soname.
        [DllImport("libc.so.6", EntryPoint = "free", CallingConvention = CallingConvention.Cdecl)]
        static extern void FreeGlibc(IntPtr block);

        static readonly bool Windows = Environment.OSVersion.Platform == PlatformID.Win32NT;
        static bool bySoname;

        public static void Free(IntPtr block)
        {
            if (block == IntPtr.Zero) return;
            if (Windows) { FreeUcrt(block); return; }
            if (!bySoname)
            {
                try { FreeLibc(block); return; }
                catch (DllNotFoundException) { bySoname = true; }
            }
            FreeGlibc(block);
        }
    }

    /// <summary>UTF-16 text between .NET strings and the library.</summary>
    public static class Text
    {
        /// <summary>A returned text: copied, then freed. Null stays null.</summary>
        public static string Take(IntPtr text)
        {
            if (text == IntPtr.Zero) return null;
            try { return Marshal.PtrToStringUni(text); }
            finally { CRuntime.Free(text); }
        }

        /// <summary>A text the library keeps (a callback's argument, a vector's element): copied.</summary>
        public static string Borrow(IntPtr text)
        {
            return text == IntPtr.Zero ? null : Marshal.PtrToStringUni(text);
        }

        // A writable text slot of a callback is pointed at a buffer of the
        // callback's, which the host copies after the callback returns; the
        // buffer lives until the next one on the same thread replaces it.
        [ThreadStatic] static IntPtr slotBuffer;

        internal static void ToSlot(IntPtr slot, string text)
        {
            if (text == null) return;
            IntPtr buffer = Marshal.StringToHGlobalUni(text);
            if (slotBuffer != IntPtr.Zero) Marshal.FreeHGlobal(slotBuffer);
            slotBuffer = buffer;
            Marshal.WriteIntPtr(slot, buffer);
        }
    }
}
