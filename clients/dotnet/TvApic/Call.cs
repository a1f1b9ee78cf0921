using System;
using System.Collections.Generic;
using System.Runtime.InteropServices;
using TvApic.Objects;

namespace TvApic
{
    /// <summary>The vectors and values one call is given: each is made from a
    /// .NET array (null gives the null vector, which the library takes as
    /// empty) and deleted with its family's _Delete when the call is over.</summary>
    public sealed class Call : IDisposable
    {
        readonly List<Action> cleanups = new List<Action>();

        public void Dispose()
        {
            for (int n = cleanups.Count - 1; n >= 0; --n) cleanups[n]();
            cleanups.Clear();
        }

        IntPtr Made(string family, int count, Func<ulong, IntPtr> create, Action<IntPtr> delete)
        {
            IntPtr vector = create((ulong)count);
            if (vector == IntPtr.Zero || (count > 0 && Vectors.Data(vector) == IntPtr.Zero))
            {
                if (vector != IntPtr.Zero) delete(vector);
                throw new OutOfMemoryException(family + "_Create(" + count + ") gave no storage");
            }
            cleanups.Add(() => delete(vector));
            return vector;
        }

        // A vector of plain elements, copied in one block by `copy` (one of Marshal.Copy's overloads).
        IntPtr Copied<T>(string family, T[] items, Func<ulong, IntPtr> create, Action<IntPtr> delete,
                         Action<T[], int, IntPtr, int> copy)
        {
            if (items == null) return IntPtr.Zero;
            IntPtr vector = Made(family, items.Length, create, delete);
            if (items.Length > 0) copy(items, 0, Vectors.Data(vector), items.Length);
            return vector;
        }

        IntPtr Int32s(string family, int[] items, Func<ulong, IntPtr> create, Action<IntPtr> delete)
        {
            return Copied(family, items, create, delete, Marshal.Copy);
        }

        static int[] Bits(uint[] items)
        {
            if (items == null) return null;
            var bits = new int[items.Length];
            Buffer.BlockCopy(items, 0, bits, 0, items.Length * 4);
            return bits;
        }

        public IntPtr Int32Vector(int[] items) { return Int32s("Int32Vector", items, Native.Int32Vector_Create, Native.Int32Vector_Delete); }
        public IntPtr EnumVector(int[] items) { return Int32s("EnumVector", items, Native.EnumVector_Create, Native.EnumVector_Delete); }
        public IntPtr ColorVector(uint[] items) { return Int32s("ColorVector", Bits(items), Native.ColorVector_Create, Native.ColorVector_Delete); }
        public IntPtr Uint32Vector(uint[] items) { return Int32s("Uint32Vector", Bits(items), Native.Uint32Vector_Create, Native.Uint32Vector_Delete); }

        public IntPtr BoolVector(bool[] items)
        {
            int[] bits = items == null ? null : Array.ConvertAll(items, x => x ? 1 : 0);
            return Int32s("BoolVector", bits, Native.BoolVector_Create, Native.BoolVector_Delete);
        }

        public IntPtr FloatVector(float[] items) { return Copied("FloatVector", items, Native.FloatVector_Create, Native.FloatVector_Delete, Marshal.Copy); }
        public IntPtr DoubleVector(double[] items) { return Copied("DoubleVector", items, Native.DoubleVector_Create, Native.DoubleVector_Delete, Marshal.Copy); }
        public IntPtr Uint8Vector(byte[] items) { return Copied("Uint8Vector", items, Native.Uint8Vector_Create, Native.Uint8Vector_Delete, Marshal.Copy); }

        public IntPtr NumericIdVector(ulong[] items)
        {
            long[] bits = null;
            if (items != null)
            {
                bits = new long[items.Length];
                Buffer.BlockCopy(items, 0, bits, 0, items.Length * 8);
            }
            return Copied("NumericIdVector", bits, Native.NumericIdVector_Create, Native.NumericIdVector_Delete, Marshal.Copy);
        }

        /// <summary>Texts are copied in by StringVector_Set and belong to the vector; null is the empty text.</summary>
        public IntPtr StringVector(string[] items)
        {
            if (items == null) return IntPtr.Zero;
            IntPtr vector = Made("StringVector", items.Length, Native.StringVector_Create, Native.StringVector_Delete);
            for (int n = 0; n < items.Length; ++n) Native.StringVector_Set(vector, (ulong)n, items[n] ?? "");
            return vector;
        }

        static void WriteHandles(IntPtr vector, IList<ApiObject> items)
        {
            for (int n = 0; n < items.Count; ++n)
                Marshal.WriteIntPtr(Vectors.Data(vector), n * IntPtr.Size, ApiObject.HandleOf(items[n]));
        }

        /// <summary>Handles as given: the vector takes no references.</summary>
        public IntPtr ObjectReferenceVector(IList<ApiObject> items)
        {
            if (items == null) return IntPtr.Zero;
            IntPtr vector = Made("ObjectReferenceVector", items.Count, Native.ObjectReferenceVector_Create,
                                 Native.ObjectReferenceVector_Delete);
            WriteHandles(vector, items);
            return vector;
        }

        /// <summary>Lists of object lists: the outer vector owns and deletes the inner ones.</summary>
        public IntPtr ObjectReferenceVectorVector(IList<ApiObject>[] items)
        {
            if (items == null) return IntPtr.Zero;
            IntPtr outer = Made("ObjectReferenceVectorVector", items.Length, Native.ObjectReferenceVectorVector_Create,
                                Native.ObjectReferenceVectorVector_Delete);
            IntPtr data = Vectors.Data(outer);
            for (int n = 0; n < items.Length; ++n) Marshal.WriteIntPtr(data, n * IntPtr.Size, IntPtr.Zero);
            for (int n = 0; n < items.Length; ++n)
            {
                if (items[n] == null) continue;
                IntPtr inner = Native.ObjectReferenceVector_Create((ulong)items[n].Count);
                if (inner == IntPtr.Zero) throw new OutOfMemoryException("ObjectReferenceVector_Create gave no vector");
                Marshal.WriteIntPtr(data, n * IntPtr.Size, inner);
                WriteHandles(inner, items[n]);
            }
            return outer;
        }

        /// <summary>A property value handle for the call (null, bool, int, double or string).</summary>
        public IntPtr PropertyValue(object value)
        {
            IntPtr handle = Values.Make(value);
            cleanups.Add(() => Native.PropertyValue_Delete(handle));
            return handle;
        }

        /// <summary>Property values: handles of their own, which the vector neither copies nor deletes.</summary>
        public IntPtr PropertyValueVector(object[] items)
        {
            if (items == null) return IntPtr.Zero;
            var handles = new IntPtr[items.Length];
            for (int n = 0; n < items.Length; ++n) handles[n] = PropertyValue(items[n]);
            IntPtr vector = Made("PropertyValueVector", items.Length, Native.PropertyValueVector_Create,
                                 Native.PropertyValueVector_Delete);
            if (items.Length > 0) Marshal.Copy(handles, 0, Vectors.Data(vector), items.Length);
            return vector;
        }

        // Attribute and storage values cannot be made from C: only no list or an empty one goes in.
        public IntPtr AttributeValueVector(object[] items) { return Empty("AttributeValueVector", items); }
        public IntPtr StorageValueVector(object[] items) { return Empty("StorageValueVector", items); }

        static IntPtr Empty(string family, object[] items)
        {
            if (items != null && items.Length > 0)
                throw new ArgumentException("a " + family + " cannot be filled from .NET; pass null or an empty array");
            return IntPtr.Zero;
        }
    }

    /// <summary>Single property values: made from null, a bool, int, double or
    /// string; read back as those.</summary>
    public static class Values
    {
        const int Empty = 0, Bool = 1, Int = 2, Double = 3, String = 4;

        /// <summary>A new value handle; the caller deletes it with PropertyValue_Delete.</summary>
        public static IntPtr Make(object value)
        {
            if (value != null && !(value is bool || value is int || value is double || value is string))
                throw new ArgumentException("a property value is null, a bool, int, double or string, not " + value.GetType().Name);
            IntPtr handle = Native.PropertyValue_Create();
            if (handle == IntPtr.Zero) throw new OutOfMemoryException("PropertyValue_Create gave no value");
            if (value is bool) Native.PropertyValue_SetBool(handle, (bool)value ? 1 : 0);
            else if (value is int) Native.PropertyValue_SetInt(handle, (int)value);
            else if (value is double) Native.PropertyValue_SetDouble(handle, (double)value);
            else if (value is string) Native.PropertyValue_SetString(handle, (string)value);
            return handle;
        }

        public static object Read(IntPtr handle)
        {
            switch (Native.PropertyValue_GetValueType(handle))
            {
                case Bool: return Native.PropertyValue_GetBool(handle) != 0;
                case Int: return Native.PropertyValue_GetInt(handle);
                case Double: return Native.PropertyValue_GetDouble(handle);
                case String: return Text.Take(Native.PropertyValue_GetString(handle));
                default: return null;
            }
        }

        /// <summary>A returned value handle: its value (null for the null handle or an empty value), then it is deleted.</summary>
        public static object Take(IntPtr handle)
        {
            if (handle == IntPtr.Zero) return null;
            try { return Read(handle); }
            finally { Native.PropertyValue_Delete(handle); }
        }
    }
}
