/* own_updater PPD RECORDING: updates the PPD as update_ppd does, with one updater more. The PPD of a
 * printer that can have a stapler says by "*DefaultZrStapler: True" whether it has one. */
#include <TkPPDUpdating.h>
#include <stdio.h>

/* Called when the printer told of its stapler, which is what the updater says that it reads. */
static int stapler_values(void* context, const TkPPDUpdatingStatus* status,
                          TkPPDUpdatingAnswer* answer) {
    TkPPDUpdatingText installed;
    (void)context;
    if (!TkPPDUpdatingStatus_value(
            status, TkPPDUpdatingTextOfString("DeviceAccessories.Stapler"), &installed)) {
        return 0; /* nothing to say: the line stays */
    }
    return TkPPDUpdatingAnswer_setValue(answer, TkPPDUpdatingTextOfString("DefaultZrStapler"),
                                        installed) == TkPPDUpdatingDone
               ? 0
               : 1;
}

static TkPPDUpdatingResult register_stapler(TkPPDUpdatingManager* manager) {
    static const char* const keywords[] = {"DefaultZrStapler", NULL};
    static const char* const entries[] = {"DeviceAccessories.Stapler", NULL};
    TkPPDUpdatingUpdater updater = {0};
    updater.size = sizeof updater;
    updater.name = TkPPDUpdatingTextOfString("StaplerUpdater");
    updater.keywords = keywords;
    updater.entries = entries;
    updater.values = stapler_values;
    return TkPPDUpdating_registerUpdater(manager, &updater);
}

/* The whole of a file that is shorter than the room for it. */
static TkPPDUpdatingText text_of_file(const char* path, char* room, size_t size) {
    FILE* file = fopen(path, "rb");
    size_t length = file ? fread(room, 1, size - 1, file) : 0;
    if (file) {
        fclose(file);
    }
    room[length] = '\0';
    return TkPPDUpdatingTextInArray(room, size);
}

int main(int count, char** arguments) {
    static char room[65536];
    TkPPDUpdatingManager* manager;
    TkPPDUpdatingStatusSource recording = {0};
    TkPPDUpdatingResult result;
    char* contents = NULL;
    size_t length = 0;
    if (count != 3) {
        fprintf(stderr, "usage: own_updater PPD RECORDING\n");
        return 2;
    }
    result = TkPPDUpdatingManager_create(&manager);
    if (result != TkPPDUpdatingDone) {
        fprintf(stderr, "own_updater: %s\n", TkPPDUpdating_meaning(result));
        return 1;
    }
    recording.kind = TkPPDUpdatingFromRecording;
    recording.text = text_of_file(arguments[2], room, sizeof room);
    result = register_stapler(manager);
    if (result == TkPPDUpdatingDone) {
        result = TkPPDUpdating_updatedPPDContentsForFile_deviceURI(
            manager, TkPPDUpdatingTextOfString(arguments[1]), &recording, &contents, &length);
    }
    if (result != TkPPDUpdatingDone) {
        fprintf(stderr, "own_updater: %s\n", TkPPDUpdating_message(manager));
    } else {
        fwrite(contents, 1, length, stdout);
    }
    TkPPDUpdating_free(contents);
    TkPPDUpdatingManager_free(manager);
    return result == TkPPDUpdatingDone && fflush(stdout) == 0 ? 0 : 1;
}
