"""How texts of the host, and numbers, are shown."""

import re
import unicodedata

LIMIT = 499  # characters of a formatted text
INT_MAX = 2**31 - 1


def shown_text(data):
    """A text of the host as it is shown: U+FFFD stands for each bad byte."""
    if isinstance(data, str):
        return data
    text = ""
    while not is_utf8(data):
        good = bad_byte(data)
        text += data[:good].decode() + "\ufffd"
        data = data[good + 1:]
    return text + data.decode()


def is_utf8(data):
    return isinstance(data, str) or bad_byte(data) is None


def bad_byte(data):
    try:
        data.decode()
    except UnicodeDecodeError as error:
        return error.start
    return None


def shown_number(value):
    """A number where the text has a %d."""
    return str(min(value, INT_MAX))


def filled(pattern, data):
    """A text with a host's text in it, cut where the limit is."""
    text = pattern.replace("%s", isolated(shown_text(data)))
    first = next((each for each in text if each == FSI or is_letter(each)), None)
    return cut(LEFT_TO_RIGHT + text if first == FSI else text)


FSI, PDI, LEFT_TO_RIGHT = "\u2068", "\u2069", "\u200e"
CONTROLS = set("\u202a\u202b\u202c\u202d\u202e\u2066\u2067\u2068\u2069\u200e\u200f\u061c")
PARAGRAPH_END = re.compile("([\n\r\x1c-\x1e\x85\u2029])")
RIGHT_TO_LEFT = re.compile("[\u0590-\u08ff\ufb1d-\ufdff\ufe70-\ufefe\U00010800-\U00010fff"
                           "\U0001e800-\U0001efff]")


def is_right_to_left(character):
    return (RIGHT_TO_LEFT.match(character) is not None
            and unicodedata.category(character) not in ("Nd", "Mn", "Mc", "Me"))


def is_letter(character):
    return character.isalpha() or is_right_to_left(character)


def isolated(text):
    """A host's text as it stands in a sentence from left to right."""
    if not any(each in CONTROLS or is_right_to_left(each) for each in text):
        return text
    pieces = PARAGRAPH_END.split(text)  # a paragraph and what ends it in turns
    shown = ""
    for paragraph, end in zip(pieces[::2], [*pieces[1::2], ""]):
        if paragraph:
            unopened, opened = isolates(paragraph)
            shown += (LEFT_TO_RIGHT if shown else "") + FSI * (unopened + 1) + paragraph \
                + PDI * (opened + 1)
        shown += end
    return shown


def isolates(text):
    """How many it ends that it has not begun, and how many it leaves open."""
    unopened = opened = 0
    for each in text:
        if each in "\u2066\u2067\u2068":
            opened += 1
        elif each == PDI and opened:
            opened -= 1
        elif each == PDI:
            unopened += 1
    return unopened, opened


def cut(text):
    """With what the cut has left open closed."""
    if len(text) <= LIMIT:
        return text
    for length in range(LIMIT, -1, -1):
        opened = isolates(PARAGRAPH_END.split(text[:length])[-1])[1]
        if length + opened <= LIMIT:
            return text[:length] + PDI * opened


def certificate_text(a):
    return "".join((
        filled("The application %s is trying to delete a certificate:", a["application"]), "\n\n",
        filled("Issued To: %s\n", a["issuedTo"]), filled("Issued By: %s\n", a["issuedBy"]), "\n",
        "Valid From", filled(": %s\n", a["validFrom"]), "Valid To", filled(": %s\n", a["validTo"]),
        "\n", filled('From the token with label "%s"', a["label"]), "\n\n",
        "Do you wish to allow this?"))


BIOMETRIC_TEXTS = {
    0xA712: "The sweep was too slow",
    0xA716: "The sensor is broken: too many defect lines on sensor",
    0xA788: "Failed to get a parameter",
    0x6983: "The authentication method is blocked",
    0x6A82: "Cannot verify, no fingerprint enrolled (0x6A82)",
}
NO_RETRY = (0xA716, 0x6983, 0x6A82)


def biometric_error(code):
    """The text for the status word of a fingerprint token, and whether it is a question.

    Of the texts that go with a single word only those above are known here.
    """
    tries = code % 16 if code & 0x63C0 == 0x63C0 else None
    if code in BIOMETRIC_TEXTS:
        text, again = BIOMETRIC_TEXTS[code], code not in NO_RETRY
    elif tries is None:
        text, again = f"Device error (0x{code % 2**32:04X})", True
    elif tries == 0:
        text, again = "Verification failed!\nThe authentication method is now blocked!", False
    elif tries == 1:
        text, again = "Verification failed!\nYou have only 1 final try remaining!", True
    else:
        text, again = f"Verification failed!\nYou have {tries} tries remaining", True
    return text + ("\n\nWould you like to try again?" if again else ""), again
