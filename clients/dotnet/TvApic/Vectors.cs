using System;
using System.Runtime.InteropServices;
using TvApic.Objects;

namespace TvApic
{
    /// <summary>C vectors read into .NET arrays. Every family is the same
    /// header, a 64-bit size and a pointer to the elements. Read* copies a
    /// vector the caller still owns (a refilled argument, a callback's);
    /// Take* copies a returned one and deletes it with its family's _Delete.
    /// The null vector reads as null.</summary>
    public static class Vectors
    {
        public static int Size(IntPtr vector)
        {
            ulong size = (ulong)Marshal.ReadInt64(vector);
            if (size > int.MaxValue) throw new OverflowException("a vector of " + size + " elements does not fit an array");
            return (int)size;
        }

        public static IntPtr Data(IntPtr vector) { return Marshal.ReadIntPtr(vector, 8); }

        // The elements of a vector of plain elements, copied in one block by
        // `copy` (one of Marshal.Copy's overloads).
        static T[] Copied<T>(IntPtr vector, Action<IntPtr, T[], int, int> copy)
        {
            var items = new T[Size(vector)];
            if (items.Length > 0) copy(Data(vector), items, 0, items.Length);
            return items;
        }

        static IntPtr[] Pointers(IntPtr vector) { return Copied<IntPtr>(vector, Marshal.Copy); }
        static int[] Int32s(IntPtr vector) { return Copied<int>(vector, Marshal.Copy); }

        public static int[] ReadInt32Vector(IntPtr v) { return v == IntPtr.Zero ? null : Int32s(v); }
        public static int[] ReadEnumVector(IntPtr v) { return ReadInt32Vector(v); }

        public static bool[] ReadBoolVector(IntPtr v)
        {
            if (v == IntPtr.Zero) return null;
            return Array.ConvertAll(Int32s(v), x => x != 0);
        }

        // Colours and 32-bit unsigned values: the same bits as int32_t.
        public static uint[] ReadUint32Vector(IntPtr v)
        {
            if (v == IntPtr.Zero) return null;
            int[] bits = Int32s(v);
            var items = new uint[bits.Length];
            Buffer.BlockCopy(bits, 0, items, 0, bits.Length * 4);
            return items;
        }

        public static uint[] ReadColorVector(IntPtr v) { return ReadUint32Vector(v); }

        public static float[] ReadFloatVector(IntPtr v) { return v == IntPtr.Zero ? null : Copied<float>(v, Marshal.Copy); }
        public static double[] ReadDoubleVector(IntPtr v) { return v == IntPtr.Zero ? null : Copied<double>(v, Marshal.Copy); }
        public static byte[] ReadUint8Vector(IntPtr v) { return v == IntPtr.Zero ? null : Copied<byte>(v, Marshal.Copy); }

        public static ulong[] ReadNumericIdVector(IntPtr v)
        {
            if (v == IntPtr.Zero) return null;
            long[] bits = Copied<long>(v, Marshal.Copy);
            var items = new ulong[bits.Length];
            Buffer.BlockCopy(bits, 0, items, 0, bits.Length * 8);
            return items;
        }

        public static string[] ReadStringVector(IntPtr v)
        {
            return v == IntPtr.Zero ? null : Array.ConvertAll(Pointers(v), Text.Borrow);
        }

        static T Take<T>(IntPtr v, Func<IntPtr, T> read, Action<IntPtr> delete) where T : class
        {
            if (v == IntPtr.Zero) return null;
            try { return read(v); }
            finally { delete(v); }
        }

        public static bool[] TakeBoolVector(IntPtr v) { return Take(v, ReadBoolVector, Native.BoolVector_Delete); }
        public static uint[] TakeColorVector(IntPtr v) { return Take(v, ReadColorVector, Native.ColorVector_Delete); }
        public static int[] TakeEnumVector(IntPtr v) { return Take(v, ReadEnumVector, Native.EnumVector_Delete); }
        public static int[] TakeInt32Vector(IntPtr v) { return Take(v, ReadInt32Vector, Native.Int32Vector_Delete); }
        public static uint[] TakeUint32Vector(IntPtr v) { return Take(v, ReadUint32Vector, Native.Uint32Vector_Delete); }
        public static float[] TakeFloatVector(IntPtr v) { return Take(v, ReadFloatVector, Native.FloatVector_Delete); }
        public static double[] TakeDoubleVector(IntPtr v) { return Take(v, ReadDoubleVector, Native.DoubleVector_Delete); }
        public static ulong[] TakeNumericIdVector(IntPtr v) { return Take(v, ReadNumericIdVector, Native.NumericIdVector_Delete); }
        public static byte[] TakeUint8Vector(IntPtr v) { return Take(v, ReadUint8Vector, Native.Uint8Vector_Delete); }
        public static string[] TakeStringVector(IntPtr v) { return Take(v, ReadStringVector, Native.StringVector_Delete); }

        /// <summary>A returned object vector: each element carries one reference, which its object takes over.</summary>
        public static T[] TakeObjectReferenceVector<T>(IntPtr v, Func<IntPtr, T> from) where T : ApiObject
        {
            return Take(v, x => Array.ConvertAll(Pointers(x), h => from(h)), Native.ObjectReferenceVector_Delete);
        }

        /// <summary>A returned list of object lists; deleting the outer vector deletes the inner ones.</summary>
        public static T[][] TakeObjectReferenceVectorVector<T>(IntPtr v, Func<IntPtr, T> from) where T : ApiObject
        {
            return Take(v, x => Array.ConvertAll(Pointers(x), inner =>
                inner == IntPtr.Zero ? null : Array.ConvertAll(Pointers(inner), h => from(h))), Native.ObjectReferenceVectorVector_Delete);
        }

        /// <summary>A returned list of property values: their values; each value handle is deleted.</summary>
        public static object[] TakePropertyValueVector(IntPtr v)
        {
            return Take(v, x => Array.ConvertAll(Pointers(x), Values.Take), Native.PropertyValueVector_Delete);
        }

        // Attribute and storage values have no C accessors: only their number is known.
        public static object[] TakeAttributeValueVector(IntPtr v) { return Take(v, x => new object[Size(x)], Native.AttributeValueVector_Delete); }
        public static object[] TakeStorageValueVector(IntPtr v) { return Take(v, x => new object[Size(x)], Native.StorageValueVector_Delete); }

        /// <summary>Makes a callback's writable text list hold `texts` (null: empty),
        /// unless it already does. The new contents are made while the old ones
        /// still exist, then exchanged with them, and the old ones deleted.</summary>
        internal static void ReplaceStrings(IntPtr vector, string[] texts)
        {
            texts = texts ?? new string[0];
            string[] now = ReadStringVector(vector);
            if (Same(now, texts)) return;
            IntPtr made = Native.StringVector_Create((ulong)texts.Length);
            if (made == IntPtr.Zero) throw new OutOfMemoryException("StringVector_Create gave no vector");
            for (int n = 0; n < texts.Length; ++n) Native.StringVector_Set(made, (ulong)n, texts[n] ?? "");
            long size = Marshal.ReadInt64(vector);
            IntPtr data = Data(vector);
            Marshal.WriteInt64(vector, Marshal.ReadInt64(made));
            Marshal.WriteIntPtr(vector, 8, Data(made));
            Marshal.WriteInt64(made, size);
            Marshal.WriteIntPtr(made, 8, data);
            Native.StringVector_Delete(made);
        }

        static bool Same(string[] a, string[] b)
        {
            if (a.Length != b.Length) return false;
            for (int n = 0; n < a.Length; ++n)
                if (a[n] != b[n]) return false;
            return true;
        }
    }
}
