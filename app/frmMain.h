// frmMain: Tarnwick's main window, the owner of the open document.
#pragma once

#include "ConfigDocument.h"

#include <QMainWindow>

class frmMain : public QMainWindow
{
    Q_OBJECT

public:
    explicit frmMain(QWidget *parent = nullptr);

    ConfigDocument &document() { return m_document; }
    /// The caption: the document's name, " - ", and the program title; the title alone for a blank name.
    void SetTitle();

private:
    ConfigDocument m_document;
};
