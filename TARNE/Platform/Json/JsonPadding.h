#pragma once

#include <QtGlobal>

namespace tarne::json {

/// Room, in bytes, that a document's array should have behind its text: the parser reads past the
/// end by as much, and copies a document that has less.
inline constexpr qsizetype paddingOfDocuments = 64;

} // namespace tarne::json
