/// What hosts do in the destructors of their own libraries: call the library while the process
/// exits.
#pragma once

namespace testhost {

/// To be called before the library is used for the first time, so that the calls come late.
void PrepareExitCalls();

/// From now on the exit asks for the locale, finalises, asks again and finalises again. A result
/// that is not the failure value ends the process with exit code 3.
void CallAtExit(void* getLocale, void* finalise);

}  // namespace testhost
