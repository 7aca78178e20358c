#pragma once

// Where the user says once how the window reads, what it does with a card, and how it speaks.

#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QLineEdit>
#include <QSpinBox>

#include "apps/viewer/viewer_settings.h"

namespace viewer
{

class SettingsDialog : public QDialog
{
    Q_OBJECT

public:
    explicit SettingsDialog(const ViewerSettings &settings, QWidget *parent = nullptr);

    /** With what the user chose here. */
    ViewerSettings settings() const;

private:
    void build();
    void listDevices();
    void selectDevice(const std::optional<UsbIds> &ids);
    void follow();
    void askForFolder();

    ViewerSettings m_settings;
    QComboBox *m_road;
    QComboBox *m_device;
    QCheckBox *m_simulatorPhotos;
    QCheckBox *m_sound;
    QComboBox *m_previousCard;
    QSpinBox *m_forgetAfter;
    QLineEdit *m_folder;
    QComboBox *m_folderNames;
    QComboBox *m_language;
};

} // namespace viewer
