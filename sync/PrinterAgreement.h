#pragma once

#include <string>

#include "core_interface/OrbCSIdentifiedStatus.h"
#include "core_interface/OrbPPDFile.h"

namespace TkPPDUpdating {

/// Whether the printer that answers is the one that a PPD is for. Behind the address of a queue may
/// be a print-server box, or a new printer in the place of the old one, and what is true of that is
/// wrong in this PPD.
///
/// Two models agree when they have the same letters and digits (and "+"), whatever their case and
/// what stands between them, without the maker's name before them and "series" behind; numbers
/// count whole
/// ("MP C2503" is not "MP C250"). Of a series is also the model that has letters behind its number
/// ("P2015 Series" and "P2015dn"); without that word, "P2015dn" is another model than "P2015",
/// which may have other things in it. What stands behind a comma or semicolon is a version.
///
/// Different makers never agree. One is the other when the one name begins with the other, word by
/// word ("Oki" and "Oki Data Corp"), or when the model of the one side has the maker of the other
/// before it ("Hewlett-Packard" makes the "HP LaserJet 4250" of "HP"). There is no list of makers.
class PrinterAgreement {
  public:
    PrinterAgreement() = delete;

    /// What a PPD says of its printer: "1284DeviceID", "Product", of which there may be several,
    /// "ModelName" and "Manufacturer" (PPD specification 4.3, section 5.3; CUPS PPD extensions).
    static OrbCSPrinterIdentity identityOfPPD(const OrbPPDFile& PPDFile);

    /// Whether a PPD says what its printer answers to PostScript's `product`: "Product" is exactly
    /// that, in parentheses (PPD specification 4.3, section 5.3). One without them, or without a
    /// letter or digit in them, says nothing.
    static bool saysProduct(const OrbPPDFile& PPDFile);

    /// Whether one of the models of the one is one of the other, and the makers of both, where they
    /// are known, are the same. Never with one that tells no model.
    static bool agree(const OrbCSPrinterIdentity& one, const OrbCSPrinterIdentity& other);

    /// What people may call it: its first model, shortened to 80 bytes; any bytes. Empty when it
    /// tells none.
    static std::string shownModel(const OrbCSPrinterIdentity& identity);
};

}  // namespace TkPPDUpdating
