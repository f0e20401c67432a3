// clang-format off
// Four includes that the layer check has to refuse, and three it has to let through.
#include "upper/Upper.h"
#include <QImage>
#include <QtWidgets/QWidget>
#include "nowhere/Unlisted.h"
#include <QRect>
#include <QtCore/QString>
#include <vector>
