// Marks an English text as a key of the message catalogue, for the extraction of all texts.
#pragma once

/// The text itself: it is translated where it is shown.
#define CATALOGUE_KEY(text) text
