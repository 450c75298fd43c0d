#pragma once

#include <atomic>
#include <chrono>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "core_interface/OrbCSDeviceStatus.h"
#include "core_interface/OrbCSOptionQuestions.h"
#include "core_interface/OrbDictionary.h"
#include "core_interface/OrbPPDFile.h"
#include "core_interface/TkCommunicationServices.h"
#include "sync/QueueSyncCauses.h"

namespace TkPPDUpdating {

/// What the printer of a queue answered.
struct QueuePrinterAnswer {
    /// Null when there is none that may be believed; `failure` then says why.
    std::shared_ptr<const OrbCSDeviceStatus> status;
    /// The place that answered with a status, be it one that is not believed; empty when none did.
    std::string URI;
    QueueFailure failure;
};

/// Asks the printers behind the queues of one run, through `OrbCoreInterface`.
///
/// A printer is asked at the queue's device URI, or where the user says, and believed. Behind
/// "socket://HOST" and "lpd://HOST/..." nobody can be asked, but the same printer as a rule answers
/// other questions: at "ipp://HOST/ipp/print", else at "ipp://HOST/", else at "snmp://HOST". All
/// three together have one limit of time, and each at most an equal share of what is left of it,
/// so that a silent one leaves time for those behind it. The first that tells a status and which
/// printer it is, is the answer; nobody is asked after it. It is believed only when that printer is
/// the one of the queue's PPD (`PrinterAgreement`), because a print-server box may stand there.
///
/// A port other than the protocol's own (9100, and 515 for "lpd") may lead through the host to
/// another printer, and is not asked.
class QueuePrinters {
  public:
    struct Options {
        /// For all places of a host together.
        std::chrono::milliseconds time = std::chrono::seconds(15);
        /// Where the printers of some queues are asked instead, as device URIs by queue name.
        std::map<std::string, std::string> statusURIs = {};
        /// Ends the questions when anybody sets it. May be null.
        const std::atomic<bool>* isCancelled = nullptr;
    };

    explicit QueuePrinters(Options options);

    /// Asks the printer of a queue. The printer behind a host is asked once, however many queues
    /// lead to it. Safe for several threads. Raises nothing but `std::bad_alloc`.
    QueuePrinterAnswer ask(const std::string& queueName, const std::string& deviceURI,
                           const OrbPPDFile& PPD) const;

    /// Where the user wants the printer of a queue to be asked, else its device URI.
    const std::string& placeOfQueue(const std::string& queueName,
                                    const std::string& deviceURI) const;

    /// Whether the user has named it, so that it is believed.
    bool isNamed(const std::string& queueName) const {
        return options_.statusURIs.contains(queueName);
    }

    /// Waits until no other queue has the turn at the place where a device URI leads, and takes it:
    /// most printers have one connection for jobs. It must not outlive this object.
    std::unique_lock<std::mutex> turnAt(const std::string& deviceURI) const;

    /// Asks the printer of a queue over SNMP, with the questions in `parameters`: at `SNMPPlace`,
    /// and believed as above. The reason of a failure is one phrase.
    QueuePrinterAnswer askOverSNMP(const std::string& queueName, const std::string& deviceURI,
                                   const OrbPPDFile& PPD, const OrbDictionary& parameters) const;

    /// Judges the printer at the device URI of a queue by the product that it says it is
    /// (`OrbCSPostScriptQuestions::reasonNotToAsk`): it has to be the one of the PPD
    /// (`PrinterAgreement`), as far as it says which it is. Null where the user names the place,
    /// and for a PPD that does not say its product.
    OrbCSPostScriptQuestions::Judge judgeOfProduct(const std::string& queueName,
                                                   const std::string& deviceURI,
                                                   const OrbPPDFile& PPD) const;

    /// Where the printer behind a device URI answers SNMP; empty when nobody can know. A port other
    /// than the printer's own may lead to another printer.
    static std::string SNMPPlace(const std::string& deviceURI);

    /// The places at which the printer behind a device URI of "socket" or "lpd" is asked, in their
    /// order; empty for another URI.
    static std::vector<std::string> placesOfHost(const std::string& deviceURI);

  private:
    /// One host, asked at all of its places.
    struct Host;

    QueuePrinterAnswer askOnePlace(const std::string& queueName, const std::string& URI) const;
    QueuePrinterAnswer askHost(const std::vector<std::string>& places) const;
    void askPlaces(const std::vector<std::string>& places, Host& host) const;

    Options options_;
    mutable std::mutex mutex_;
    mutable std::map<std::string, std::shared_ptr<Host>> hosts_;
    /// By place; none ever goes.
    mutable std::map<std::string, std::mutex> turns_;
};

}  // namespace TkPPDUpdating
