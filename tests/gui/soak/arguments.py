"""What the host passes, good and bad: the arguments of a call by the keys of the test host."""

from .model import PAD_ORDERS, PAD_SHOWS
from .user import ASCII, OTHERS

LABELS = ("Token", "", "Smith & Sons &OK", "100%s %d %n", "M\u00fcller \U0001f511", "\u6f22\u5b57",
          "\u05e9\u05dc\u05d5\u05dd", "two\nlines\tand a tab", "many words " * 40, "<b>&amp;</b>",
          # What turns the direction of what follows, what cannot be seen, what commands terminals.
          "\u202eNIP ruoy\u202c", "\u2067\u202emore\u2069", "\u200b\u200d\ufeff", "\u2028a\u2029b",
          "bell\x07 red\x1b[31m \x01\x7f\u0085")
HUGE = 10_000  # bytes
BIG = 2**32 - 1


def arguments_for(random, export, pad_name):
    """`pad_name` gives the name of a pad: of a new one when it is called with True."""
    maker, nulls = next(((maker, nulls) for names, maker, nulls in MAKERS if export in names),
                        (None, ()))
    arguments = maker(random, pad_name) if maker else {}
    if nulls and random.random() < 0.06:
        arguments[random.choice(nulls)] = None
    return arguments


# ---------------------------------------------------------------- pieces

def label(random):
    draw = random.random()
    if draw < 0.7:
        return random.choice(LABELS)
    size = HUGE if draw > 0.97 else random.randrange(1, 40)
    if draw < 0.85:
        return "".join(random.choice(ASCII + OTHERS) for _ in range(size))
    return bytes(random.randrange(1, 256) for _ in range(size))  # hardly ever UTF-8


def capacity(random):
    return random.choice((64, 64, 64, 160, 16, 8, 4, 3, 1, 0))


def bounds(random):
    """Lengths of a PIN, usual and unusual; some that nothing can meet."""
    low, high = random.choice(((4, 8), (4, 8), (4, 8), (1, 12), (0, 8), (6, 40), (4, 4), (0, 0),
                               (0, BIG), (8, 4), (BIG, BIG), (2**31, 2**31),
                               (random.getrandbits(32), random.getrandbits(32))))
    return {"min": low, "max": high}


def flag(random):
    return random.choice((0, 0, 1, 1, 200))


# ---------------------------------------------------------------- exports

def pin(random, _):
    return {"label": label(random), **bounds(random), "pinCapacity": capacity(random),
            "failedEarlier": flag(random), "noFailure": flag(random), "finalTry": flag(random)}


def pin_with_counter(random, _):
    return {"label": label(random), **bounds(random), "pinCapacity": capacity(random),
            "failedEarlier": flag(random), "maxTries": random.choice((0, 3, 3, 15, BIG)),
            "triesLeft": random.choice((0, 1, 2, 3, 3, 15, BIG))}


def change(random, _):
    return {"label": label(random), **bounds(random), "noFailure": flag(random),
            "finalTry": flag(random), "changePuk": random.choice((0, 0, 1)),
            "oldCapacity": capacity(random), "newCapacity": capacity(random)}


def policed_change(random, pad_name):
    block = bytearray(32)
    limits = (256, 16, 4, 2, 2, 5, 4, 12, 32, 16, 256, 2, 2, 2)
    for place, limit in enumerate(limits):
        block[place] = random.randrange(limit)
    block[25] = random.choice((0, 0, 1))
    block[28:32] = (-random.randrange(5)).to_bytes(4, "little", signed=True)
    white_list = ASCII if block[25] else ""
    characters = random.choice((b"", b"0aA", white_list.encode(), bytes(range(1, 64))))
    old = random.choice(((0, 0), (0, 0), (2, 6), (0, 3)))
    no_list = {"policyListDescriptor": None} if random.random() < 0.2 else {}
    return {**change(random, pad_name), **no_list, "initialise": flag(random),
            "triesLeft": random.choice((0, 1, 2, BIG)), "oldMin": old[0], "oldMax": old[1],
            "policy": random.choice((None, bytes(block).hex(), bytes(block).hex())),
            "policyList": characters.hex(), "policyTag": random.choice((0, 0, 1, 3, 4, BIG)),
            "policySize": random.choice((32, 32, 32, 33, 31))}


def challenge_response(random, _):
    size = random.choice((8, 8, 16, 0, 1, 200))
    low, high = random.choice(((4, 8), (4, 8), (0, 8), (-1, 12), (6, 2**31 - 1), (5, -1)))
    return {"label": label(random), "serial": label(random),
            "challenge": bytes(random.randrange(256) for _ in range(size)).hex(),
            "challengeLength": size, "responseLength": random.choice((8, 8, 1, 0, 20, -1)),
            "min": low, "max": high, "askNewPin": random.choice((0, 1, 1, -1)),
            "responseCapacity": capacity(random), "newPinCapacity": capacity(random)}


def tokens(random, _):
    count = random.choice((0, 1, 2, 3, 5, 5, 40, 300))
    text = label if count < 10 else lambda random: random.choice(LABELS)
    entries = [(text(random), text(random), random.getrandbits(64)) for _ in range(count)]
    if entries and random.random() < 0.02:
        entries[-1] = ("a name without a detail", None, 1)
    return {"entry": entries}


def digital_ids(random, _):
    count = random.choice((0, 1, 2, 3, 3, 40, 500))
    return {"name": label(random), "validFrom": label(random), "validTo": label(random),
            "directory": random.choice(("", "corp.example", label(random))), "count": count,
            "defaultIndex": random.choice((0, 0, 1, max(count - 1, 0), count, count + 1, BIG)),
            "alwaysUse": flag(random), "autoSelect": random.choice((0, 0, 1)),
            "value": random.getrandbits(64)}


def unblock_method(random, _):
    codes = random.choice(([0], [0, 1], [1, 0], [], [7, 1, BIG]))
    return {"pukOffered": random.choice((0, 1, 1, -1)), "code": codes, "count": len(codes)}


def labelled(random, _):
    return {"label": label(random)}


def expiry(random, _):
    return {"number": random.choice((0, 1, 14, 2**31 - 1, BIG))}


def biometric_error(random, _):
    return {"number": random.choice((0x6400, 0x6983, 0x6A82, 0xA712, 0xA716, 0xA788, 0xA71C,
                                     0x63C0 + random.randrange(16), 0xA800, 0, 2**64 - 1))}


def certificate(random, _):
    return {name: label(random) for name in ("application", "label", "issuedTo", "issuedBy",
                                             "validFrom", "validTo")}


def pad_show(random, pad_name):
    return {"pad": pad_name(True), "allowAbort": flag(random)}


def pad_order(random, pad_name):
    if random.random() < 0.1:
        return {"handle": random.choice((0, 1, 0x1234, 2**64 - 1))}
    return {"pad": pad_name(False)}


def translation(random, _):
    source = random.choice(("Cancel", "Enter PIN", "", label(random)))
    return {"source": source, "bufferCapacity": text_capacity(random, source)}


def wide_translation(random, _):
    source = random.choice(("Cancel", "Enter PIN", "", random.choice(LABELS) * 9))
    return {"source": source.encode("utf-32-le"), "bufferCapacity": text_capacity(random, source)}


def locale(random, _):
    return {"bufferCapacity": text_capacity(random, "en_US")}


def text_capacity(random, text):
    return random.choice((0, 64, len(text), len(text) + 1, 4 * HUGE))


def parameters(random, _):
    return {"parameter": random.getrandbits(64), "value": random.getrandbits(64)}


def nothing(*_):
    return {}


CHANGE_NULLS = ("record", "out", "label", "old", "new")
# Exports, what makes their arguments, and which of these may be null.
MAKERS = (
    (("DLG_ShowPinDialog", "DLG_ShowLegalPinDialog"), pin, ("record", "out", "label", "pin")),
    (("DLG_ShowPinDialogEx", "DLG_ShowLegalPinDialogEx"), pin_with_counter,
     ("record", "out", "label", "pin")),
    (("DLG_ShowUnblockThroughPUK", "DLG_ShowChangeTransportPIN", "DLG_ShowChangePinDialog"),
     change, CHANGE_NULLS),
    (("DLG_ShowChangePolicedPinDialog_func",), policed_change,
     (*CHANGE_NULLS, "policyBlock", "policyListDescriptor")),
    (("DLG_ShowUnblockThroughCR",), challenge_response,
     ("record", "out", "label", "serial", "challenge", "challengeData", "response", "newPin")),
    (("DLG_ShowTokenSelectionDialog",), tokens, ("record", "entries", "identifier")),
    (("DLG_ShowDigitalIDSelection",), digital_ids,
     ("record", "chosen", "texts", "name", "validFrom", "validTo", "directory")),
    (("DLG_ShowSelectUnblockMethod",), unblock_method, ("algorithms", "method", "algorithm")),
    (("DLG_ShowLockedDialog",), labelled, ("label",)),
    (("DLG_AskEarlyUnexpirePin",), expiry, ()),
    (("DLG_ShowSupertokenError",), biometric_error, ()),
    (("DLG_ShowConfirmDeleteCertificate",), certificate,
     ("application", "label", "issuedTo", "issuedBy", "validFrom", "validTo")),
    (("DLG_ShowSupertokenAuthDlg", "DLG_ShowSupertokenEnrolDlg"), nothing, ("shown",)),
    (tuple(PAD_SHOWS), pad_show, ("handle",)),
    (tuple(PAD_ORDERS), pad_order, ()),
    (("DLG_GetTranslationUTF8",), translation, ("source", "buffer", "size")),
    (("DLG_GetTranslationUTF16",), wide_translation, ("source", "buffer", "size")),
    (("DLG_GetLocale",), locale, ("buffer", "size")),
    (("DLG_SetParameter", "DLG_GetParameter"), parameters, ()),
)
