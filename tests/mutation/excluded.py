"""What is not changed, with the reason: nobody has said how it has to be."""

import re

EXCLUDED = (
    ("how much air there is between things", r"src/.*",
     r"\b(kMargin|kSectionGap|kLineGap|kMinContentWidth|kTextLetters|kAroundText|k\w*Padding|k\w*Gap|kEdge|kRadius|k\w*Opacity|kHalfLine|kQuarter|k\w*Scale|kIndent"
     r"|kFrame|kFieldFrame|kCascade|spacing = |wxString\('0)\b"),
    ("how pale a caption is, and where it stands in its grid", r"src/dialogs/digital_id_dialog\.cpp",
     r"G_MAXUINT16|grid\.(Add|GetRows)|^\s*\{1, 2\}"),
    ("what the line above a pad's row looks like", r"src/pin/pin_pad_dialog\.cpp",
     r"LineColour\(\)|\bline = new"),
    ("words of exceptions: a host gets a code for them", r"src/.*",
     r"(Error|_error|_argument|ToolkitTaken\(\) : std::runtime_error)\(\"| (is|are) missing\"|too (small|long)[^\"]*\""),
    ("keys of what the library ties to widgets for itself", r"src/widgets/.*",
     r"\"zeldlg-(tied-to|rows)\""),
    ("times that have to be about right: nobody can count their milliseconds", r"src/runtime/.*",
     r"\b(kLastInstructionsMs|kCatalogueWaitMs|kExitLimitMs|kAsleepMs|kLoaderWaitMs|kLooks"
     r"|kBetweenLooksMs)\b|waited < 100|milliseconds\(10\)"),
    ("sizes of buffers and stacks", r"src/runtime/.*",
     r"\b(kStackSize|kMovesUp|kStateBits)\b|array<char, 64>"),
    ("how much room a long text gets before it is cut, wrapped or scrolls", r"src/.*",
     r"\b(k\w*Lines|kMinWidth|kMaxWidth|kMinRows|kMaxRows|kScrollStep|kCodeFontScale|k(Fewest|Most)Digits|kWidthOfAll"
     r"|kExplanationWidth|kMeasured\w*|k\w*TextHeight|k\w*NoticeWidth|kNoticeShare|kWidestCount|kLongestMenu|int room)\b"
     r"|int beside = |2 \* padding"),
    ("which of a window's pictures its icon comes after", r"src/widgets/desktop\.cpp",
     r"\bkFirstPictures\b"),
)


def reason_to_exclude(mutant):
    return next((reason for reason, paths, line in EXCLUDED
                 if re.fullmatch(paths, mutant.path) and re.search(line, mutant.source_line)), None)
