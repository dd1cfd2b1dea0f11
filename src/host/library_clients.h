#ifndef ORVIX1_SRC_HOST_LIBRARY_CLIENTS_H
#define ORVIX1_SRC_HOST_LIBRARY_CLIENTS_H

namespace orvix1 {
namespace detail {

// cleanup_wxwidgets() without its final step: ends one client and, on the
// last one, drops the main window, but leaves wxWidgets running. True when
// it ended the last client.
bool release_library_client();

}  // namespace detail
}  // namespace orvix1

#endif
