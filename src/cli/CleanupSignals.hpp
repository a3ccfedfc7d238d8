#pragma once

namespace tolven::cli {

// Makes every terminating signal the process can catch remove the pending output files before it
// ends the process as it would have. A signal inherited as ignored (SIGHUP under nohup) stays
// ignored, and one that already has a handler keeps it.
void remove_pending_outputs_on_signals();

}  // namespace tolven::cli
