/// A host that runs an instance of the dialog toolkit of its own, on a thread of its own. Only
/// the test host that is linked with the toolkit has it.
#pragma once

namespace testhost {

/// Returns once the toolkit runs; false when it could not start.
bool StartToolkit();
/// Ends the toolkit's loop and joins its thread.
void StopToolkit();

}  // namespace testhost
