/* A CUPS filter (filter(7)) for PostScript: values_filter JOB USER TITLE COPIES OPTIONS [FILE]
 *
 * Puts the values that the updaters would write into the queue's PPD into the job, each as a comment
 * behind its first line, so that the printer's interpreter, or the next filter, has those of the moment.
 * The status is the one that the driver's backend left in the scheduler's cache folder when it last
 * talked to the printer, CACHE/QUEUE.json; without it the printer is asked at the queue's device URI.
 * Whatever goes wrong with the values, the job is printed. */
#include <TkPPDUpdating.h>
#include <stdio.h>
#include <stdlib.h>

/* Opens CACHE/QUEUE.json; null when it is not there. */
static FILE* cached_status(void) {
    const char* folder = getenv("CUPS_CACHEDIR");
    const char* queue = getenv("PRINTER");
    char path[1024];
    int length = folder && queue ? snprintf(path, sizeof path, "%s/%s.json", folder, queue) : -1;
    return length > 0 && (size_t)length < sizeof path ? fopen(path, "rb") : NULL;
}

/* The function behind TkPPDUpdatingFromFunction. */
static int give_cached_status(void* context, TkPPDUpdatingAnswer* answer) {
    static char room[65536];
    TkPPDUpdatingText text;
    text.bytes = room;
    text.length = fread(room, 1, sizeof room, (FILE*)context);
    return TkPPDUpdatingAnswer_setText(answer, text) == TkPPDUpdatingDone ? 0 : 1;
}

/* Messages of a filter go to standard error, behind a word that says how much they matter. */
static void write_values(TkPPDUpdatingManager* manager) {
    TkPPDUpdatingStatusSource source = {0};
    TkPPDUpdatingValue* values = NULL;
    size_t count = 0;
    size_t index;
    FILE* cached = cached_status();
    source.kind = cached ? TkPPDUpdatingFromFunction : TkPPDUpdatingFromDeviceURI;
    source.function = give_cached_status;
    source.context = cached;
    source.text = TkPPDUpdatingTextOfString(getenv("DEVICE_URI"));
    if (TkPPDUpdating_PPDUpdatingValuesForDeviceStatus_deviceURI_PPDFile(
            manager, &source, TkPPDUpdatingTextOfString(getenv("PPD")), &values, &count) !=
        TkPPDUpdatingDone) {
        fprintf(stderr, "WARNING: %s\n", TkPPDUpdating_message(manager));
    }
    for (index = 0; index < count; ++index) {
        printf("%%%s: %s\n", values[index].key.bytes, values[index].value.bytes);
    }
    if (*TkPPDUpdating_note(manager) != '\0') {
        fprintf(stderr, "DEBUG: %s\n", TkPPDUpdating_note(manager));
    }
    TkPPDUpdating_free(values);
    if (cached) {
        fclose(cached);
    }
}

int main(int count, char** arguments) {
    TkPPDUpdatingManager* manager;
    FILE* job = count == 7 ? fopen(arguments[6], "rb") : stdin;
    int each;
    if (count < 6 || count > 7 || !job) {
        fprintf(stderr, "ERROR: values_filter: no job to print\n");
        return 1;
    }
    do {
        each = getc(job);
        if (each != EOF) {
            putchar(each);
        }
    } while (each != EOF && each != '\n');
    if (TkPPDUpdatingManager_create(&manager) == TkPPDUpdatingDone) {
        write_values(manager);
        TkPPDUpdatingManager_free(manager);
    }
    while ((each = getc(job)) != EOF) {
        putchar(each);
    }
    if (ferror(job) || fflush(stdout) != 0) {
        fprintf(stderr, "ERROR: values_filter: the job could not be copied\n");
        return 1;
    }
    return 0;
}
