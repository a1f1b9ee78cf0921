using System;
using System.Collections.Generic;
using System.Threading;

namespace TvApic.Objects
{
    /// <summary>A handle of the host's object through one of its interfaces,
    /// holding one reference, which Dispose gives back exactly once. Calls
    /// after that throw ObjectDisposedException. Objects not disposed keep
    /// their reference: release runs on the host's thread, never a finaliser's.</summary>
    public abstract partial class ApiObject : IDisposable
    {
        IntPtr handle;
        static long outstanding;

        /// <summary>Takes over one reference the caller holds.</summary>
        protected ApiObject(IntPtr handle)
        {
            this.handle = handle;
            Interlocked.Increment(ref outstanding);
        }

        /// <summary>The references objects of this binding hold: 0 once every one is disposed.</summary>
        public static long Outstanding { get { return Interlocked.Read(ref outstanding); } }

        public IntPtr Handle
        {
            get
            {
                IntPtr h = handle;
                if (h == IntPtr.Zero) throw new ObjectDisposedException(Interface);
                return h;
            }
        }

        /// <summary>The catalogue's name of the interface this object is reached through.</summary>
        public abstract string Interface { get; }

        public void Dispose()
        {
            IntPtr h = Interlocked.Exchange(ref handle, IntPtr.Zero);
            if (h == IntPtr.Zero) return;
            Native.IAPIObject_Release(h);
            Interlocked.Decrement(ref outstanding);
        }

        /// <summary>The same object through interface T, with a reference of its
        /// own. Whether the object has T is not asked: functions of an interface
        /// it lacks call nothing and return their defaults.</summary>
        public T Query<T>() where T : ApiObject
        {
            Func<IntPtr, ApiObject> make;
            if (!Factories.TryGetValue(typeof(T), out make))
                throw new ArgumentException(typeof(T).Name + " is not an interface of the catalogue");
            IntPtr h = Handle;
            Native.IAPIObject_AddRef(h);
            return (T)make(h);
        }

        /// <summary>Whether the host says both are the same object, whatever their interfaces.</summary>
        public bool IsSameObject(ApiObject other)
        {
            return other != null && Native.IAPIObject_IsSameObjects(Handle, other.Handle);
        }

        public override string ToString() { return Interface + " 0x" + handle.ToString("x"); }

        internal static IntPtr HandleOf(ApiObject o) { return o == null ? IntPtr.Zero : o.Handle; }
    }

    /// <summary>An object whose interface a signature leaves open.</summary>
    public sealed class IAPIObject : ApiObject
    {
        public const string Iid = "11473080-d3ff-4d2c-82fa-f746284274b4";
        IAPIObject(IntPtr handle) : base(handle) { }
        public override string Interface { get { return "IAPIObject"; } }
        public static IAPIObject From(IntPtr handle) { return handle == IntPtr.Zero ? null : new IAPIObject(handle); }
    }

    /// <summary>Objects lent to a handler for the call: each holds a reference
    /// of its own, given back when the handler returns.</summary>
    sealed class Lent : IDisposable
    {
        readonly List<ApiObject> lent = new List<ApiObject>();

        public T Object<T>(IntPtr handle, Func<IntPtr, T> from) where T : ApiObject
        {
            if (handle == IntPtr.Zero) return null;
            Native.IAPIObject_AddRef(handle);
            T o = from(handle);
            lent.Add(o);
            return o;
        }

        public T[] Objects<T>(IntPtr vector, Func<IntPtr, T> from) where T : ApiObject
        {
            if (vector == IntPtr.Zero) return null;
            var items = new T[Vectors.Size(vector)];
            IntPtr data = Vectors.Data(vector);
            for (int n = 0; n < items.Length; ++n)
                items[n] = Object(System.Runtime.InteropServices.Marshal.ReadIntPtr(data, n * IntPtr.Size), from);
            return items;
        }

        public void Dispose()
        {
            foreach (ApiObject o in lent) o.Dispose();
        }
    }

    /// <summary>The delegates the library holds as callbacks: kept from their
    /// registration until RemoveAllHandlers removes them, so that the
    /// collector never frees a function the host still calls.</summary>
    public static class Handlers
    {
        struct Kept
        {
            public IntPtr Source;
            public string Key;     // null: the source's registrations are unkeyed
            public Delegate Callback;
        }

        static readonly List<Kept> kept = new List<Kept>();

        /// <summary>How many callbacks are kept alive.</summary>
        public static int Count { get { lock (kept) return kept.Count; } }

        /// <summary>Where a handler's exception goes: it cannot cross into the host.
        /// By default it is written to the standard error stream.</summary>
        public static Action<string, Exception> OnException = (export, e) =>
            Console.Error.WriteLine("tvAPIC: a handler registered with " + export + " threw " + e);

        internal static void Report(string export, Exception e) { OnException(export, e); }

        internal static void Keep(IntPtr source, string key, Delegate callback)
        {
            lock (kept) kept.Add(new Kept { Source = source, Key = key, Callback = callback });
        }

        // Handles of one interface of one object have one address, so the
        // address names the events object (null key: all of its callbacks).
        internal static void Drop(IntPtr source, string key)
        {
            lock (kept) kept.RemoveAll(k => k.Source == source && (key == null || k.Key == key));
        }
    }
}
