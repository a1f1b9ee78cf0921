using System;
using System.IO;
using System.Net.Sockets;

namespace TvApic.Remote
{
    /// <summary>A client of the API Server: one method per remotable function
    /// (generated), each one connection that sends the request and reads the
    /// response until the server closes it. Handles are the server's numbers
    /// (0 is null) and keep their reference on the server; there is no remote
    /// release. Out-parameters are slots: a value goes in and the function's
    /// comes back, null sends none.</summary>
    public partial class Client
    {
        public Client(string host = "127.0.0.1", int port = 8001)
        {
            Host = host;
            Port = port;
            Timeout = TimeSpan.FromSeconds(30);
        }

        public string Host { get; private set; }
        public int Port { get; private set; }

        /// <summary>How long one read or write may wait for the server.</summary>
        public TimeSpan Timeout { get; set; }

        Response Call(Request request)
        {
            using (var tcp = new TcpClient())
            {
                tcp.NoDelay = true;
                tcp.SendTimeout = tcp.ReceiveTimeout = (int)Timeout.TotalMilliseconds;
                tcp.Connect(Host, Port);
                NetworkStream stream = tcp.GetStream();
                byte[] bytes = request.ToArray();
                stream.Write(bytes, 0, bytes.Length);
                return new Response(request.Name, ReadToEnd(stream));
            }
        }

        // The server closes the connection after the response; bytes of the
        // request it did not read may turn that into a reset, which then ends
        // the response like a close. A response cut short shows when it is read.
        static byte[] ReadToEnd(NetworkStream stream)
        {
            var answer = new MemoryStream();
            var buffer = new byte[8192];
            try
            {
                int n;
                while ((n = stream.Read(buffer, 0, buffer.Length)) > 0) answer.Write(buffer, 0, n);
            }
            catch (IOException e) when (e.InnerException is SocketException
                                         && ((SocketException)e.InnerException).SocketErrorCode == SocketError.ConnectionReset)
            {
            }
            return answer.ToArray();
        }
    }
}
