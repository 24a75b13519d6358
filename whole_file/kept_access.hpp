#pragma once

namespace velm {

/// Gives the file behind `to` the access of the one behind `from` (opened with O_PATH or otherwise): owner and group
/// where the system allows it, permissions, access list and extended attributes. What cannot be kept leads to less
/// access, never to more: the bits that run a program as its owner or group go with them; a group that is another gets
/// what everybody has, and one whose list is lost what the list has for it. Throws std::system_error.
void keep_access(int from, int to);

} // namespace velm
