#include "PageLayouts.h"

#include "ControlBinder.h"
#include "TwinLabel.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

namespace PageLayouts {

namespace {

    constexpr int numberWidth = 40; // wide enough for five digits

    // A grid of rows: caption | control | unit. Checks and sliders span the row.
    class Form
    {
    public:
        explicit Form(ControlBinder &binder)
            : m_binder(binder)
            , m_grid(new QGridLayout)
        {
            m_grid->setContentsMargins(2, 1, 2, 2);
            m_grid->setHorizontalSpacing(4);
            m_grid->setVerticalSpacing(1);
            m_grid->setColumnStretch(1, 1);
        }

        Form &check(const char *name, int index = 0)
        {
            m_grid->addWidget(m_binder.control(QString::fromLatin1(name), index), m_row++, 0, 1, 3);
            return *this;
        }
        // Caption left, the control over the rest of the row.
        Form &wide(const char *name)
        {
            const QString control = QString::fromLatin1(name);
            m_grid->addWidget(m_binder.label(control), m_row, 0);
            m_grid->addWidget(m_binder.control(control), m_row++, 1, 1, 2);
            return *this;
        }
        // Caption over the control, both across the row: for a list too wide to share its row.
        Form &below(const char *name)
        {
            const QString control = QString::fromLatin1(name);
            m_grid->addWidget(m_binder.label(control), m_row++, 0, 1, 3);
            m_grid->addWidget(m_binder.control(control), m_row++, 0, 1, 3);
            return *this;
        }
        // Caption left, a number field, an optional unit right after the field.
        Form &number(const char *name, const char *unit = nullptr)
        {
            const QString control = QString::fromLatin1(name);
            m_grid->addWidget(m_binder.label(control), m_row, 0);
            auto *row = new QHBoxLayout;
            row->setSpacing(4);
            row->addWidget(numberField(control));
            if (unit)
                row->addWidget(new QLabel(QString::fromLatin1(unit)));
            row->addStretch(1);
            m_grid->addLayout(row, m_row++, 1, 1, 2);
            return *this;
        }
        // A number field with its caption after it, as the railgun rows read.
        Form &numberThenCaption(const char *name)
        {
            const QString control = QString::fromLatin1(name);
            auto *row = new QHBoxLayout;
            row->setSpacing(6);
            row->addWidget(numberField(control));
            row->addWidget(m_binder.label(control), 1);
            m_grid->addLayout(row, m_row++, 0, 1, 3);
            return *this;
        }
        // The value label over the slider.
        Form &slider(const char *name)
        {
            const QString control = QString::fromLatin1(name);
            m_grid->addWidget(m_binder.label(control), m_row++, 0, 1, 3);
            m_grid->addWidget(m_binder.control(control), m_row++, 0, 1, 3);
            return *this;
        }
        Form &widget(QWidget *widget, int column = 0, int span = 3)
        {
            m_grid->addWidget(widget, m_row++, column, 1, span);
            return *this;
        }
        Form &layout(QLayout *layout)
        {
            m_grid->addLayout(layout, m_row++, 0, 1, 3);
            return *this;
        }
        QGroupBox *group(const QString &title)
        {
            auto *box = new QGroupBox(title);
            box->setLayout(m_grid);
            return box;
        }
        QWidget *numberField(const QString &control, int index = 0)
        {
            QWidget *field = m_binder.control(control, index);
            field->setFixedWidth(numberWidth);
            return field;
        }

    private:
        ControlBinder &m_binder;
        QGridLayout *m_grid;
        int m_row = 0;
    };

    QVBoxLayout *column(std::initializer_list<QWidget *> groups)
    {
        auto *col = new QVBoxLayout;
        col->setSpacing(4);
        for (QWidget *group : groups)
            col->addWidget(group);
        col->addStretch(1);
        return col;
    }

    QWidget *page(std::initializer_list<QVBoxLayout *> columns)
    {
        auto *content = new QWidget;
        auto *row = new QHBoxLayout(content);
        row->setContentsMargins(0, 0, 0, 0);
        row->setSpacing(4);
        for (QVBoxLayout *col : columns)
            row->addLayout(col, 1);
        return content;
    }

} // namespace

QWidget *clientPage(ControlBinder &b)
{
    QGroupBox *player = Form(b)
                            .wide("txtName")
                            .wide("cmdModel")
                            .number("txtForce", "sec")
                            .check("chkDefer")
                            .slider("sldHandicap")
                            .group(QStringLiteral("Player"));
    QGroupBox *view = Form(b)
                          .slider("Slider1")
                          .check("chk3dPerson")
                          .slider("sldRange")
                          .slider("sldAngle")
                          .group(QStringLiteral("View"));
    QGroupBox *team = Form(b).slider("sldTCT").group(QStringLiteral("Team Settings:"));

    Form awardsForm(b);
    auto *awardGrid = new QGridLayout;
    awardGrid->setHorizontalSpacing(6);
    awardGrid->setVerticalSpacing(2);
    for (int k = 0; k < 6; ++k) {
        awardGrid->addWidget(new QLabel(QStringLiteral("a%1").arg(k + 1)), k / 2, (k % 2) * 2);
        awardGrid->addWidget(awardsForm.numberField(QStringLiteral("txtAwards"), k), k / 2, (k % 2) * 2 + 1);
    }
    QGroupBox *awards = awardsForm.layout(awardGrid).group(QStringLiteral("Awards"));

    Form videosForm(b);
    auto *tierGrid = new QGridLayout;
    tierGrid->setVerticalSpacing(2);
    for (int k = 0; k < 8; ++k)
        tierGrid->addWidget(b.control(QStringLiteral("chkTiers"), k), k % 4, k / 4);
    QGroupBox *videos = videosForm.layout(tierGrid).group(QStringLiteral("Videos"));

    return page({ column({ player, view }), column({ team, awards, videos }) });
}

QWidget *serverPage(ControlBinder &b)
{
    QGroupBox *server
        = Form(b).wide("txtHost").wide("txtMSV1").check("chkPure").check("chkAutoDnld").group(QStringLiteral("Server"));
    QGroupBox *clients = Form(b)
                             .check("chkPrivSv")
                             .widget(b.control(QStringLiteral("cmdClPas")), 0, 1)
                             .group(QStringLiteral("Clients"));
    return page({ column({ server }), column({ clients }) });
}

QWidget *rendererPage(ControlBinder &b)
{
    QGroupBox *display = Form(b)
                             .wide("cbResolution")
                             .wide("cbClrs")
                             .check("chkFullScr")
                             .slider("sldGamma")
                             .check("chkIHG")
                             .check("chkSyncFr")
                             .check("chkFrSwap")
                             .check("chkSMP")
                             .group(QStringLiteral("Display"));
    QGroupBox *textures = Form(b)
                              .wide("cbTexDetail")
                              .below("cbTexQual")
                              .below("cbTexMode")
                              .check("chkCTex")
                              .check("chkDetTex")
                              .group(QStringLiteral("Textures"));
    QGroupBox *lighting = Form(b)
                              .check("optLighting", 0)
                              .check("optLighting", 1)
                              .check("chkDynLight")
                              .check("chkDLTW")
                              .check("chkFlares")
                              .number("txtFlSize")
                              .number("txtFlFade")
                              .check("chkHighSky")
                              .check("chkVTP")
                              .check("chkSun")
                              .group(QStringLiteral("Lighting"));
    QGroupBox *extensions = Form(b)
                                .check("chkGLExt")
                                .check("chkCVAR")
                                .check("chkMultiTex")
                                .number("txtFOV")
                                .number("txtMaxFPS")
                                .group(QStringLiteral("Engine"));
    QGroupBox *detail = Form(b)
                            .wide("cbWDetail")
                            .below("cbShadows")
                            .check("chkMarks")
                            .check("chkBlood")
                            .check("chkGibs")
                            .check("chkSItems")
                            .check("chkRwrds")
                            .check("chkForcePM")
                            .check("chkAnim")
                            .check("chkCurve")
                            .group(QStringLiteral("Detail"));
    QGroupBox *memory = Form(b)
                            .number("txtSubdiv")
                            .number("txtBrass")
                            .number("txtHunkMegs")
                            .number("txtConSpeed")
                            .group(QStringLiteral("Performance"));
    // The engine's long check box and the widest list (shadows) cannot share a row of columns: the
    // right-hand block holds two rows, each split to suit its own groups.
    auto *right = new QVBoxLayout;
    right->setSpacing(4);
    for (auto pair : { std::pair { lighting, detail }, std::pair { extensions, memory } }) {
        auto *row = new QHBoxLayout;
        row->setSpacing(4);
        row->addWidget(pair.first, 1);
        row->addWidget(pair.second, 1);
        right->addLayout(row);
    }
    right->addStretch(1);
    return page({ column({ display, textures }), right });
}

QWidget *soundNetworkPage(ControlBinder &b)
{
    QGroupBox *sound = Form(b)
                           .check("chkSysSnd")
                           .slider("sldEVol")
                           .slider("sldMVol")
                           .slider("sldMix")
                           .wide("cbKHZ")
                           .check("chk8Bit")
                           .check("chkFootSteps")
                           .check("chkA3D")
                           .slider("sld2dsnd")
                           .check("chkA3D_GP")
                           .group(QStringLiteral("Sound"));
    QGroupBox *network = Form(b)
                             .wide("cbNetCon")
                             .widget(b.label(QStringLiteral("cbPckts")))
                             .widget(b.control(QStringLiteral("cbPckts")), 1, 2)
                             .number("txtMaxPackSize")
                             .check("chkDelta")
                             .check("chkPrediction")
                             .check("chkPredictItems")
                             .check("chkIPX")
                             .check("chkUDP")
                             .group(QStringLiteral("Network"));
    return page({ column({ sound }), column({ network }) });
}

QWidget *hudPage(ControlBinder &b)
{
    auto *messages = new QHBoxLayout;
    messages->setSpacing(6);
    messages->addWidget(b.control(QStringLiteral("chkMsg")));
    QWidget *seconds = b.control(QStringLiteral("txtNTime"));
    seconds->setFixedWidth(numberWidth);
    messages->addWidget(seconds);
    messages->addWidget(b.label(QStringLiteral("txtNTime")), 1);

    QGroupBox *screen = Form(b)
                            .check("chk2D")
                            .check("chkStBar")
                            .check("chkIcons")
                            .check("chk3DIcons")
                            .check("chkLAG")
                            .check("chkFPS")
                            .check("chkTimer")
                            .check("chkMotd")
                            .group(QStringLiteral("Screen"));
    QGroupBox *combat = Form(b)
                            .check("chkCHair")
                            .slider("slCHairSize")
                            .check("chkKiller")
                            .check("chkLAW")
                            .check("chkWModel")
                            .layout(messages)
                            .group(QStringLiteral("Combat"));
    return page({ column({ screen }), column({ combat }) });
}

QWidget *railgunPage(ControlBinder &b)
{
    QGroupBox *rail = Form(b)
                          .wide("cbColor")
                          .numberThenCaption("txtRailIn")
                          .numberThenCaption("txtRailOut")
                          .numberThenCaption("txtDistCoil")
                          .numberThenCaption("txtTrail")
                          .group(QStringLiteral("Railgun"));
    return page({ column({ rail }), column({}) });
}

} // namespace PageLayouts
