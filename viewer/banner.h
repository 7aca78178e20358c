#pragma once

// What the window tells, where it stands in nobody's way.

#include <QFrame>
#include <QLabel>

#include "viewer/messages.h"

namespace viewer
{

class Banner : public QFrame
{
    Q_OBJECT

public:
    Banner();

    void tell(const Message &message);

private:
    QLabel m_icon;
    QLabel m_headline;
    QLabel m_details;
};

} // namespace viewer
