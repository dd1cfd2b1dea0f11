#ifndef TALVAR2_TALVAR2_H
#define TALVAR2_TALVAR2_H
/// @file
/// Every public header of the companion library.
#include "talvar2/debug/assertion.h"
#include "talvar2/environment.h"
#include "talvar2/export.h"
#include "talvar2/functor/signal.h"
#include "talvar2/path.h"
#include "talvar2/pointers/intrusive_pointer.h"
#include "talvar2/pointers/smart_pointer.h"
#include "talvar2/threading/batch_cancel.h"
#include "talvar2/threading/callbacks.h"
#include "talvar2/threading/default_task.h"
#include "talvar2/threading/mutex.h"
#include "talvar2/threading/operation_status.h"
#include "talvar2/threading/queue_unit.h"
#include "talvar2/threading/scheduler.h"
#include "talvar2/threading/stage.h"
#include "talvar2/threading/task.h"
#include "talvar2/threading/thread_pool_unit.h"
#include "talvar2/threading/unit.h"
#include "talvar2/value_locker.h"
#include "talvar2/xml/advanced_xml_config.h"

#endif
