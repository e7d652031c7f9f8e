/* dialogs COUNT: asks for a PIN that often, one time after the other. */
#include <stdlib.h>
#include <unistd.h>

#include "host.h"
#include "memory.h"
#include "note.h"

int MeasureDialogs(const Host* host) {
    const PinDialogRequest request = {"Identity card", 4, 8, 1, 0, 0};
    for (long left = Argument(host, 0); left > 0; --left) {
        uint8_t bytes[64];
        PinBuffer pin = {bytes, sizeof bytes};
        usleep(BENCH_PAUSE);
        Note("call");
        const uint32_t result = host->dialogs->ShowPinDialog(&request, &pin);
        Note("return");
        if (result != ZELDLG_OK || pin.pinLength != 6) {
            return EXIT_FAILURE;
        }
    }
    NoteValue("rss", ResidentKb());
    return EXIT_SUCCESS;
}
