#pragma once

#include "config/ConfigVisitors.h"
#include "config/ks_singleton_base.h"
#include "platform/AppHome.h"

#include <valvecell/HomeFiles.h>

/// A few settings in a JSON file of their own. `Own` names the file below the home by its `fileName`, and its fields by
/// visit(). GUI thread.
template <typename Own>
class SmallConfig : public ks_singleton_base<Own>
{
public:
    static QString path() { return platform::inHome(QLatin1String(Own::fileName)); }

    /// Replaces the file in one step; false with the reason when it cannot be written, and the old one is unchanged.
    bool save(QString* error)
    {
        JsonWriteVisitor writer;
        own().visit(writer);
        return HomeFiles::writeJsonText(path(), writer.text() + '\n', error);
    }

protected:
    /// Gives every field its default.
    void setDefaults()
    {
        DefaultsVisitor defaults;
        own().visit(defaults);
    }

private:
    Own& own() { return static_cast<Own&>(*this); }
};
