// Icons in the colours of the palette.
#pragma once

#include <QIcon>

namespace zelk {

/// The drawing icons/NAME.svg with its "currentColor" replaced by the palette's text colour as it is when the icon is
/// painted, in any size and at any device pixel ratio.
QIcon themeIcon(const QString& name);

} // namespace zelk
