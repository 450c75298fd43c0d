/// Keeps the PPD of a CUPS print queue in step with the printer behind it: the interface for
/// programs in C (C99), and in whatever can call C.
///
/// Texts are UTF-8 and have a length; a NUL at their end is neither needed nor looked for. Every
/// function takes any argument, null and nonsense included, and says by its result what was wrong
/// with it; no C++ exception leaves one.
///
/// Threads: a manager is for one thread at a time, and so is what was got from it. Several managers
/// may be used side by side. A manager that is used while one of its calls is at work, from another
/// thread or from a call-back, gives TkPPDUpdatingBadArgument.
///
/// What the printer's answer does not tell stays as it is: an updater runs only when all that it
/// reads was told, or can be completed from the PPD (`TkPPDUpdating_note` says what was kept).
#ifndef TKPPDUPDATING_H
#define TKPPDUPDATING_H

#include <stddef.h>
#include <stdint.h>
#include <string.h>

#include "text/TkPPDUpdatingPublic.h"

#ifdef __cplusplus
extern "C" {
#endif

/// How a call ended. `TkPPDUpdating_message` says more of the last one.
typedef enum TkPPDUpdatingResult {
    TkPPDUpdatingDone = 0,
    /// An argument is null, empty, too long, has no end or is none of those that there are.
    TkPPDUpdatingBadArgument = 1,
    TkPPDUpdatingNoMemory = 2,
    /// The file cannot be read or is no PPD, or the queue has none.
    TkPPDUpdatingNoPPD = 3,
    /// The device URI cannot be taken apart, or nothing serves its scheme.
    TkPPDUpdatingBadDeviceURI = 4,
    /// The recording is malformed; the message has the place.
    TkPPDUpdatingBadRecording = 5,
    /// The printer was asked and gave no status.
    TkPPDUpdatingNoStatus = 6,
    /// An attribute of the PPD that an updater looks up ends at its colon.
    TkPPDUpdatingBrokenAttribute = 7,
    /// A call-back of the caller's own said that it failed.
    TkPPDUpdatingCallFailed = 8,
    /// What should not happen.
    TkPPDUpdatingInternalError = 9
} TkPPDUpdatingResult;

/// A text of the caller's or of the library's: that many bytes. Null with the length 0 is no text.
typedef struct TkPPDUpdatingText {
    const char* bytes;  ///< UTF-8, with or without a NUL behind them.
    size_t length;      ///< In bytes, the NUL not counted.
} TkPPDUpdatingText;

/// The length of a text that has no end; every function refuses it.
#define TkPPDUpdatingNoEnd SIZE_MAX

/// The longest path, URI, name, keyword or value, in bytes, and the longest recording or PPD.
#define TkPPDUpdatingMostBytesOfName ((size_t)65535)
#define TkPPDUpdatingMostBytesOfText ((size_t)64 << 20)

/// The text in an array of `size` bytes, up to its first NUL; one without an end when it has none.
static inline TkPPDUpdatingText TkPPDUpdatingTextInArray(const char* array, size_t size) {
    const void* const end = array ? memchr(array, 0, size) : NULL;
    TkPPDUpdatingText text;
    text.bytes = array;
    text.length = end ? (size_t)((const char*)end - array) : TkPPDUpdatingNoEnd;
    return text;
}

/// The text of a C string, which ends with a NUL; no text for null (as `getenv` gives).
static inline TkPPDUpdatingText TkPPDUpdatingTextOfString(const char* string) {
    TkPPDUpdatingText text;
    text.bytes = string;
    text.length = string ? strlen(string) : 0;
    return text;
}

/// Runs updaters over PPDs: the fourteen built-in ones and those that were registered.
typedef struct TkPPDUpdatingManager TkPPDUpdatingManager;

/// What a call-back answers with, a printer's status and a parsed PPD, as call-backs get them:
/// valid until the call-back ends, like all texts that they give.
typedef struct TkPPDUpdatingAnswer TkPPDUpdatingAnswer;
typedef struct TkPPDUpdatingStatus TkPPDUpdatingStatus;
typedef struct TkPPDUpdatingPPD TkPPDUpdatingPPD;

/// Makes a manager; to be ended with `TkPPDUpdatingManager_free`. `*manager` is null on failure.
TKPPDUPDATING_PUBLIC TkPPDUpdatingResult
TkPPDUpdatingManager_create(TkPPDUpdatingManager** manager);

/// Ends a manager, which no call may be using. Null is none.
TKPPDUPDATING_PUBLIC void TkPPDUpdatingManager_free(TkPPDUpdatingManager* manager);

/// What was wrong in the last call with this manager, one line without a line feed that names the
/// file, queue or argument; the empty text when nothing was. Owned by the manager, valid until its
/// next call. Never null.
TKPPDUPDATING_PUBLIC const char* TkPPDUpdating_message(const TkPPDUpdatingManager* manager);

/// What the last call left as it was because the printer did not tell it, in words; the empty text
/// for nothing. Owned as the message is. Never null.
TKPPDUPDATING_PUBLIC const char* TkPPDUpdating_note(const TkPPDUpdatingManager* manager);

/// What a result means in general, for where there is no manager. Never null.
TKPPDUPDATING_PUBLIC const char* TkPPDUpdating_meaning(TkPPDUpdatingResult result);

/// Frees contents or values that an operation gave. Null is nothing.
TKPPDUPDATING_PUBLIC void TkPPDUpdating_free(void* contentsOrValues);

/// Where the status of a printer comes from.
typedef enum TkPPDUpdatingSourceKind {
    /// `text` is a device URI: file:, and, where their modules are installed, ipp:, ipps:, dnssd:
    /// and
    /// snmp:. The printer is asked at most once in a call, and only when an updater needs it.
    TkPPDUpdatingFromDeviceURI = 1,
    /// `text` is a recorded status, in JSON.
    TkPPDUpdatingFromRecording = 2,
    /// `function` gives one when an updater needs it.
    TkPPDUpdatingFromFunction = 3
} TkPPDUpdatingSourceKind;

/// Gives a recorded status with `TkPPDUpdatingAnswer_setText` and ends with 0; another result says
/// that the printer gave none. Called on the caller's thread, during the call only.
typedef int (*TkPPDUpdatingStatusFunction)(void* context, TkPPDUpdatingAnswer* answer);

/// To be set to zero before its members are ("= {0}").
typedef struct TkPPDUpdatingStatusSource {
    TkPPDUpdatingSourceKind kind;          ///< Which of the next two counts.
    TkPPDUpdatingText text;                ///< The device URI or the recording.
    TkPPDUpdatingStatusFunction function;  ///< Null for the other kinds.
    void* context;                         ///< Handed to the function; never looked at.
} TkPPDUpdatingStatusSource;

/// A value that an updater would write into a PPD. Each text has a NUL behind it.
typedef struct TkPPDUpdatingValue {
    TkPPDUpdatingText key;    ///< What it stands for: a keyword of the PPD.
    TkPPDUpdatingText value;  ///< The value itself.
} TkPPDUpdatingValue;

/// The text of the PPD at `path` with the values of the printer, in `*contents`, with a NUL behind
/// it: the file's own bytes when nothing changed. To be freed with `TkPPDUpdating_free`. Without a
/// source (null) every updater runs as it does for a printer that gives no status, which is for a
/// new queue; a source that gives none ends the call. On failure `*contents` is null and `*length`
/// is 0.
TKPPDUPDATING_PUBLIC TkPPDUpdatingResult TkPPDUpdating_updatedPPDContentsForFile_deviceURI(
    TkPPDUpdatingManager* manager, TkPPDUpdatingText path, const TkPPDUpdatingStatusSource* source,
    char** contents, size_t* length);

/// The same with the values of the PPD that is installed for a print queue.
TKPPDUPDATING_PUBLIC TkPPDUpdatingResult TkPPDUpdating_updatedPPDContentsForFile_queueName(
    TkPPDUpdatingManager* manager, TkPPDUpdatingText path, TkPPDUpdatingText queueName,
    char** contents, size_t* length);

/// The values that the updaters would write into the PPD of a queue, sorted by their keys, in
/// `*values`; one array, to be freed with `TkPPDUpdating_free`, null when there are none. The
/// printer is asked as a filter asks it: nobody is asked for anything, and the limit of time is
/// short.
TKPPDUPDATING_PUBLIC TkPPDUpdatingResult TkPPDUpdating_PPDUpdatingValuesForQueueWithName_deviceURI(
    TkPPDUpdatingManager* manager, TkPPDUpdatingText queueName,
    const TkPPDUpdatingStatusSource* source, TkPPDUpdatingValue** values, size_t* count);

/// The same for the PPD at `path`. The source must not be null.
TKPPDUPDATING_PUBLIC TkPPDUpdatingResult
TkPPDUpdating_PPDUpdatingValuesForDeviceStatus_deviceURI_PPDFile(
    TkPPDUpdatingManager* manager, const TkPPDUpdatingStatusSource* source, TkPPDUpdatingText path,
    TkPPDUpdatingValue** values, size_t* count);

/// An updater of the caller's own, which writes attributes "*KEYWORD: value", each on a line of its
/// own, the defaults of options among them ("DefaultStapler"). To be set to zero before its members
/// are.
///
/// A call-back ends with 0; any other result fails the operation with TkPPDUpdatingCallFailed.
typedef struct TkPPDUpdatingUpdater {
    /// sizeof(TkPPDUpdatingUpdater).
    size_t size;
    /// ASCII letters and digits; none that is registered has the same.
    TkPPDUpdatingText name;
    /// Handed to the call-backs as it is; not null for a reason only.
    void* context;
    /// The main keywords, without asterisk, that it writes: not null, and the last one is null.
    const char* const* keywords;
    /// The entries of the status that it reads (`TkPPDUpdatingStatus_value`), the last one null. It
    /// runs only on an answer that told them. Null for one that is always run.
    const char* const* entries;
    /// Sets `*applies`. Null: it applies when the PPD has one of the keywords.
    int (*isApplicable)(void* context, const TkPPDUpdatingPPD* PPD, int* applies);
    /// Gives the value of keywords with `TkPPDUpdatingAnswer_setValue`; the line of a keyword
    /// without one stays. A value is written as it is: quoted, where the PPD wants that. Not null.
    /// `status` is null when there is none.
    int (*values)(void* context, const TkPPDUpdatingStatus* status, TkPPDUpdatingAnswer* answer);
} TkPPDUpdatingUpdater;

/// Registers a copy of the updater for all later calls with this manager. Its context and
/// call-backs, not its texts, are used until the manager ends.
TKPPDUPDATING_PUBLIC TkPPDUpdatingResult
TkPPDUpdating_registerUpdater(TkPPDUpdatingManager* manager, const TkPPDUpdatingUpdater* updater);

/// Takes an updater out of all later calls with this manager, a built-in one by the name of its
/// class
/// ("OrbPPDCustomMediaUpdater"). An unknown name is TkPPDUpdatingBadArgument.
TKPPDUPDATING_PUBLIC TkPPDUpdatingResult
TkPPDUpdating_unregisterUpdater(TkPPDUpdatingManager* manager, TkPPDUpdatingText name);

/// For call-backs: the recording, which is copied.
TKPPDUPDATING_PUBLIC TkPPDUpdatingResult TkPPDUpdatingAnswer_setText(TkPPDUpdatingAnswer* answer,
                                                                     TkPPDUpdatingText text);

/// For call-backs: the value of a keyword; both are copied. A value that would take a line of its
/// own, holds a control character or begins another line of a PPD is refused.
TKPPDUPDATING_PUBLIC TkPPDUpdatingResult TkPPDUpdatingAnswer_setValue(TkPPDUpdatingAnswer* answer,
                                                                      TkPPDUpdatingText keyword,
                                                                      TkPPDUpdatingText value);

/// For call-backs: what the status says of an entry, in `*value`. 1 when it says something, else 0.
///
/// | entry | value |
/// |---|---|
/// | DeviceAccessories.NAME | "True" or "False": whether that accessory is installed |
/// | InstalledPensConfiguration.codeName, InstalledPensConfiguration.KEYWORD | a text |
/// | LinTable | the time of the calibration; 0 for never |
/// | MaxSupportedResolution | a number or a text |
TKPPDUPDATING_PUBLIC int TkPPDUpdatingStatus_value(const TkPPDUpdatingStatus* status,
                                                   TkPPDUpdatingText entry,
                                                   TkPPDUpdatingText* value);

/// For call-backs: the value of the first attribute with that main keyword, in `*value`; the choice
/// keyword, for "DefaultOPTION". 1 when there is one, else 0.
TKPPDUPDATING_PUBLIC int TkPPDUpdatingPPD_value(const TkPPDUpdatingPPD* PPD,
                                                TkPPDUpdatingText keyword,
                                                TkPPDUpdatingText* value);

/// For call-backs: whether the option has the choice.
TKPPDUPDATING_PUBLIC int TkPPDUpdatingPPD_hasChoice(const TkPPDUpdatingPPD* PPD,
                                                    TkPPDUpdatingText option,
                                                    TkPPDUpdatingText choice);

#ifdef __cplusplus
}
#endif

#endif
