#ifndef ORVIX1_SRC_LOG4CPLUS_HEADERS_H
#define ORVIX1_SRC_LOG4CPLUS_HEADERS_H

// The only way into log4cplus. wx defines UNICODE, which would switch the
// log4cplus headers to wide characters; Debian's log4cplus is built for char.
#pragma push_macro("UNICODE")
#pragma push_macro("_UNICODE")
#undef UNICODE
#undef _UNICODE
#include <log4cplus/appender.h>
#include <log4cplus/consoleappender.h>
#include <log4cplus/initializer.h>
#include <log4cplus/layout.h>
#include <log4cplus/logger.h>
#include <log4cplus/loggingmacros.h>
#include <log4cplus/loglevel.h>
#include <log4cplus/spi/loggingevent.h>
#pragma pop_macro("_UNICODE")
#pragma pop_macro("UNICODE")

#endif
