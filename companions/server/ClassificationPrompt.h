#pragma once

#include "PageFacts.h"

#include <QByteArray>
#include <QStringList>

namespace tarne {

/// The JSON body that asks the model about one page.
///
/// The instruction is the same text in every request. What comes from the user and from the page is
/// one JSON document in a part of its own, so a page's words are data to the model and never stand
/// among its instructions. The answer is bound to a schema (see readVerdict). `examples` are hosts
/// and paths of pages that the user has called on task.
[[nodiscard]] QByteArray classificationRequestBody(const QString &goals, const PageFacts &page,
                                                   const QStringList &examples);

} // namespace tarne
