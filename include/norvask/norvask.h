/// @file
/// Norvask: load XML into a tree, edit and query it, save it; read and write documents of any size
/// without a tree; values typed throughout.
///
/// This header includes the whole public interface. Start with manager.h: the manager creates and
/// loads the documents from which everything else is reached.
#ifndef NORVASK_NORVASK_H
#define NORVASK_NORVASK_H

#include "norvask/attribut.h"
#include "norvask/bin_node.h"
#include "norvask/convenience.h"
#include "norvask/convert.h"
#include "norvask/document.h"
#include "norvask/error.h"
#include "norvask/exception.h"
#include "norvask/export.h"
#include "norvask/load.h"
#include "norvask/manager.h"
#include "norvask/node.h"
#include "norvask/sax_attribut.h"
#include "norvask/sax_handler.h"
#include "norvask/sax_writer.h"
#include "norvask/text_node.h"
#include "norvask/wide_char_to_string.h"

#endif
