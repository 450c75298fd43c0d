/* update_ppd PPD DEVICE_URI: writes the PPD with the values of the printer to standard output. */
#include <TkPPDUpdating.h>
#include <stdio.h>

int main(int count, char** arguments) {
    TkPPDUpdatingManager* manager;
    TkPPDUpdatingStatusSource printer = {0};
    TkPPDUpdatingResult result;
    char* contents;
    size_t length;
    if (count != 3) {
        fprintf(stderr, "usage: update_ppd PPD DEVICE_URI\n");
        return 2;
    }
    result = TkPPDUpdatingManager_create(&manager);
    if (result != TkPPDUpdatingDone) {
        fprintf(stderr, "update_ppd: %s\n", TkPPDUpdating_meaning(result));
        return 1;
    }
    printer.kind = TkPPDUpdatingFromDeviceURI;
    printer.text = TkPPDUpdatingTextOfString(arguments[2]);
    result = TkPPDUpdating_updatedPPDContentsForFile_deviceURI(
        manager, TkPPDUpdatingTextOfString(arguments[1]), &printer, &contents, &length);
    if (result != TkPPDUpdatingDone) {
        fprintf(stderr, "update_ppd: %s\n", TkPPDUpdating_message(manager));
    } else if (fwrite(contents, 1, length, stdout) != length || fflush(stdout) != 0) {
        perror("update_ppd: standard output");
        result = TkPPDUpdatingInternalError;
    } else if (*TkPPDUpdating_note(manager) != '\0') {
        fprintf(stderr, "update_ppd: %s\n", TkPPDUpdating_note(manager));
    }
    TkPPDUpdating_free(contents);
    TkPPDUpdatingManager_free(manager);
    return result == TkPPDUpdatingDone ? 0 : 1;
}
