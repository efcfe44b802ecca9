#pragma once

namespace Varnel {

/// Makes the status menu readable for assistive technologies: an open pop-up is in the tree of the application, as a
/// menu whose items stand in the order of its entries, the chart is a graphic, and rows are static text. The toolkit
/// leaves pop-ups out, takes every entry of a menu for a command and knows nothing of views.
///
/// To be called before the first menu is made; further calls do nothing.
void makeMenusAccessible();

} // namespace Varnel
