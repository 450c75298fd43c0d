#pragma once

namespace TkPPDUpdating::Testing {

/// A TCP port of 127.0.0.1 that nothing listens on at the moment. Somebody else may take it before
/// it is used: try again then.
int freeLoopbackPort();

/// Whether something accepts connections on the port of 127.0.0.1.
bool isListening(int port);

}  // namespace TkPPDUpdating::Testing
