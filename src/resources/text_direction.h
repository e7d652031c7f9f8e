// Keeps a text of the host from turning the sentence that it stands in, whatever letters and
// characters of bidirectional control are in it.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace zeldlg {

enum class TextDirection { LeftToRight, RightToLeft };

/// That of the first letter; none without letters.
std::optional<TextDirection> DirectionOf(std::wstring_view text);

/// The text as it may stand in a sentence of that direction. One that holds characters of
/// bidirectional control or a letter of the other direction is enclosed in U+2068 and U+2069, each
/// of its paragraphs for itself, as nothing reaches beyond the end of one. None of its characters
/// is lost or replaced: what it closes without having opened it is opened before it, what it leaves
/// open is closed behind it. Any other text comes back as it is.
std::wstring Isolated(const std::wstring& text, TextDirection surroundings);

/// A sentence of that direction that may begin with a text that Isolated() has enclosed. Pango
/// would take the direction of the whole from there: a mark before it (U+200E or U+200F) keeps it.
std::wstring WithOwnDirection(const std::wstring& sentence, TextDirection direction);

/// The characters that have opened what is still enclosed at the end of the text, in their order.
std::wstring OpenIsolates(std::wstring_view text);

/// What closes `open`, from OpenIsolates().
std::wstring Closing(std::wstring_view open);

/// The text cut to at most `limit` characters, of which some close what the cut has left open.
std::wstring CutTo(const std::wstring& text, size_t limit);

}  // namespace zeldlg
