#pragma once

namespace tarne::shots {

class Gallery;

/// The two sheets that end a session: reflection and feedback.
void takeWrapUpShots(Gallery &gallery);

} // namespace tarne::shots
