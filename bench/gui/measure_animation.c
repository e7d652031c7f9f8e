/* animation ROUNDS MILLISECONDS: keeps the window of the key generation open, each round that long,
 * and does nothing meanwhile. The probe notes each frame that is painted. */
#include <stdlib.h>
#include <unistd.h>

#include "cost.h"
#include "host.h"
#include "note.h"

int MeasureAnimation(const Host* host) {
    const long milliseconds = Argument(host, 1);
    for (long round = Argument(host, 0); round > 0; --round) {
        if (host->dialogs->ShowKeyGenerationProgressDialog() != ZELDLG_OK) {
            return EXIT_FAILURE;
        }
        usleep(500000); /* the window appears */
        Note("appeared");
        const Cost before = CostSoFar();
        usleep((useconds_t)milliseconds * 1000);
        NoteCostSince(&before);
        Note("enough");
        host->dialogs->HideKeyGenerationProgressDialog();
    }
    return EXIT_SUCCESS;
}
