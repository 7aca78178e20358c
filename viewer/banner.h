#pragma once

// What the window tells, where it stands in nobody's way.

#include <memory>

#include <QFrame>

#include "viewer/messages.h"

namespace viewer
{

namespace Ui
{
class Banner;
}

class Banner : public QFrame
{
    Q_OBJECT

public:
    explicit Banner(QWidget *parent = nullptr);
    ~Banner() override;

    void tell(const Message &message);

private:
    const std::unique_ptr<Ui::Banner> m_ui;
};

} // namespace viewer
