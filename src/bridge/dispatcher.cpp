#include "bridge/dispatcher.h"

#include <string>

#include "bridge/wire.h"

namespace tvapic::bridge {

void Dispatch(ByteStream& connection) {
    std::string name = ReadName(connection);
    if (Handler handler = FindHandler(name)) handler(connection);
    connection.Close();
}

}  // namespace tvapic::bridge
