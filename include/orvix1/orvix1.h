#ifndef ORVIX1_ORVIX1_H
#define ORVIX1_ORVIX1_H

// Every public header of the library, and those of talvar2.
#include "orvix1/dialog.h"
#include "orvix1/elements/BgImageElement.h"
#include "orvix1/elements/DropArrowElement.h"
#include "orvix1/elements/ImageElement.h"
#include "orvix1/elements/RectangleElement.h"
#include "orvix1/elements/TextElement.h"
#include "orvix1/error_dialog.h"
#include "orvix1/export.h"
#include "orvix1/image_loader.h"
#include "orvix1/locked_color.h"
#include "orvix1/native_window.h"
#include "orvix1/resource_loader.h"
#include "orvix1/ui_resources.h"
#include "orvix1/wx_dll_application.h"
#include "orvix1/wxStaticPicture.h"
#include "orvix1/xrc_handlers.h"
#include "talvar2/talvar2.h"

#endif
