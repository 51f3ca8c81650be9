#pragma once

#include <optional>
#include <string>
#include <string_view>

/// Where server and bridge meet; see docs/companions-protocol.md.
namespace tarne {

/// The folder of TARNE's store; empty where the environment tells no home.
[[nodiscard]] std::string storeFolder();

/// The folder of the server's socket: in the runtime folder, else that of the store. Empty where
/// the environment tells neither.
[[nodiscard]] std::string companionsFolder();

/// Makes the folder, with mode 0700, if it is absent. False unless it is a folder of this user's
/// that nobody else can enter: what lies in another one is not to be trusted.
[[nodiscard]] bool makePrivateFolder(const std::string &path);

/// The name of the socket that belongs to a port.
[[nodiscard]] std::string questionSocketName(int port);
/// The port in the name of a socket that the bridge may try, 3000 to 3100; none for another name.
[[nodiscard]] std::optional<int> portOfQuestionSocket(std::string_view name);

} // namespace tarne
