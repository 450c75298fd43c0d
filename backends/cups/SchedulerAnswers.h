#pragma once

#include <cups/ipp.h>

#include <span>
#include <string>
#include <vector>

#include "sync/QueueScheduler.h"

namespace TkPPDUpdating {

/// The names of the attributes that an administrator sets beside the PPD. Those that the scheduler
/// derives from the PPD are not among them.
std::span<const char* const> schedulerSettings();

/// The names of the queues of an answer to CUPS-Get-Printers, which has a group for each: sorted,
/// those of other machines left out. The answer, which may be null, is not owned.
std::vector<std::string> queueNamesInAnswer(ipp_t* answer);

/// The queue of that name as an answer to Get-Printer-Attributes tells it; what it does not tell is
/// empty, 0 or idle.
SchedulerQueue queueInAnswer(ipp_t* answer, const std::string& name);

}  // namespace TkPPDUpdating
