using System;
using System.IO;
using System.Text;

namespace TvApic.Remote
{
    /// <summary>The server answered fewer or more bytes than the function's signature holds.</summary>
    public class ProtocolException : Exception
    {
        public ProtocolException(string message) : base(message) { }
    }

    /// <summary>A request: the function's name, then its arguments, little-endian
    /// without padding; text as a 64-bit byte count and UTF-8.</summary>
    sealed class Request
    {
        static readonly Encoding Utf8 = new UTF8Encoding(false, true);
        readonly MemoryStream bytes = new MemoryStream();
        readonly BinaryWriter writer;

        public Request(string name)
        {
            Name = name;
            writer = new BinaryWriter(bytes);
            byte[] ascii = Encoding.ASCII.GetBytes(name);
            writer.Write((ulong)ascii.Length);
            writer.Write(ascii);
        }

        public string Name { get; private set; }
        public byte[] ToArray() { writer.Flush(); return bytes.ToArray(); }

        public void U64(ulong value) { writer.Write(value); }
        public void I32(int value) { writer.Write(value); }
        public void I32(bool value) { writer.Write(value ? 1 : 0); }
        public void F64(double value) { writer.Write(value); }

        /// <summary>Null is the empty text.</summary>
        public void Text(string value)
        {
            byte[] utf8;
            try { utf8 = Utf8.GetBytes(value ?? ""); }
            catch (EncoderFallbackException)
            {
                throw new ArgumentException(Name + ": a text argument holds an unpaired surrogate, which UTF-8 cannot carry");
            }
            writer.Write((ulong)utf8.Length);
            writer.Write(utf8);
        }

        // A slot: flag 0 and the value, or flag 1 alone for no value.
        public void SlotI32(int? value) { writer.Write((byte)(value.HasValue ? 0 : 1)); if (value.HasValue) writer.Write(value.Value); }
        public void SlotI32(bool? value) { SlotI32(value.HasValue ? (value.Value ? 1 : 0) : (int?)null); }
        public void SlotF64(double? value) { writer.Write((byte)(value.HasValue ? 0 : 1)); if (value.HasValue) writer.Write(value.Value); }
    }

    /// <summary>A response read in the order of the function's signature.</summary>
    sealed class Response
    {
        static readonly Encoding Utf8 = new UTF8Encoding(false, true);
        readonly string name;
        readonly byte[] bytes;
        int at;

        public Response(string name, byte[] bytes)
        {
            this.name = name;
            this.bytes = bytes;
        }

        byte[] Take(ulong count)
        {
            if (count > (ulong)(bytes.Length - at))
                throw new ProtocolException(name + ": the response ended after " + bytes.Length + " bytes, before its end");
            var part = new byte[count];
            Array.Copy(bytes, at, part, 0, (int)count);
            at += (int)count;
            return part;
        }

        public ulong U64() { return BitConverter.ToUInt64(Little(Take(8)), 0); }
        public int I32() { return BitConverter.ToInt32(Little(Take(4)), 0); }
        public double F64() { return BitConverter.ToDouble(Little(Take(8)), 0); }

        static byte[] Little(byte[] b)
        {
            if (!BitConverter.IsLittleEndian) Array.Reverse(b);
            return b;
        }

        public string Text() { return Utf8.GetString(Take(U64())); }

        /// <summary>A string vector: null when the server sent nothing for it (the null list).</summary>
        public string[] TextVector()
        {
            if (at == bytes.Length) return null;
            ulong count = U64();
            if (count > (ulong)(bytes.Length - at) / 8)
                throw new ProtocolException(name + ": a list of " + count + " texts does not fit the response");
            var texts = new string[count];
            for (ulong n = 0; n < count; ++n) texts[n] = Text();
            return texts;
        }

        // A slot comes back with the flag as sent, and the function's value after flag 0.
        public int? SlotI32(int? sent) { return Take(1)[0] == 0 ? I32() : (int?)null; }
        public bool? SlotI32(bool? sent) { int? v = SlotI32((int?)null); return v.HasValue ? v.Value != 0 : (bool?)null; }
        public double? SlotF64(double? sent) { return Take(1)[0] == 0 ? F64() : (double?)null; }

        /// <summary>Checks that nothing is left over.</summary>
        public void End()
        {
            if (at != bytes.Length)
                throw new ProtocolException(name + ": " + (bytes.Length - at) + " bytes more than the signature holds");
        }
    }
}
