/// A host that uses GTK itself and has started it before the library.
#pragma once

namespace testhost {

/// @return Whether GTK has found a display. GTK is loaded at run time.
bool StartGtk();

}  // namespace testhost
