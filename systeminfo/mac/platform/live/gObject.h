#pragma once

#include <glib-object.h>

#include <memory>

namespace norvex {

struct GObjectRelease
{
    void operator()(gpointer object) const { g_object_unref(object); }
};

/// Owns a reference to an object of GLib's, or none. Include this header before Qt's: GIO has members named
/// `signals`, which Qt defines as a macro.
template <typename Object>
using GObjectOwner = std::unique_ptr<Object, GObjectRelease>;

} // namespace norvex
