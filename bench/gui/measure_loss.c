/* loss PID: kills the display's server and notes the calls that come after it. */
#include <signal.h>
#include <stdlib.h>

#include "host.h"
#include "note.h"

int MeasureLoss(const Host* host) {
    RoundTrip(host);
    if (kill((pid_t)Argument(host, 0), SIGKILL) != 0) {
        return EXIT_FAILURE;
    }
    for (int call = 0; call < 3; ++call) {
        const PinDialogRequest request = {"Identity card", 4, 8, 1, 0, 0};
        uint8_t bytes[64];
        PinBuffer pin = {bytes, sizeof bytes};
        Note("lost-call");
        const uint32_t result = host->dialogs->ShowPinDialog(&request, &pin);
        Note("lost-return");
        if (result == ZELDLG_OK) {
            return EXIT_FAILURE;
        }
    }
    Note("lost-call");
    host->dialogs->Finalize();
    Note("lost-return");
    return EXIT_SUCCESS;
}
