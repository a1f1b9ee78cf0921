using System.Runtime.CompilerServices;

// The tests reach the callback adapters' writers, which no host event of the
// simulated host calls.
[assembly: InternalsVisibleTo("tvapic_dotnet_tests")]
