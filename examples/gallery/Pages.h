#pragma once

#include <QString>

#include <vector>

class QWidget;

namespace orvel::gallery {

struct Page {
    QString name; ///< of the tab and of the picture
    QWidget *widget;
};

/// Every page, without parents: whoever takes them shows them.
std::vector<Page> makePages();

} // namespace orvel::gallery
