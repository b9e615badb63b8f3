// PageLayouts: where each setting control stands on its page. The controls themselves come from
// the catalogue through the ControlBinder; these functions only arrange them.
#pragma once

class ControlBinder;
class QWidget;

namespace PageLayouts {

QWidget *clientPage(ControlBinder &binder);
QWidget *serverPage(ControlBinder &binder);
QWidget *rendererPage(ControlBinder &binder);
QWidget *soundNetworkPage(ControlBinder &binder);
QWidget *hudPage(ControlBinder &binder);
QWidget *railgunPage(ControlBinder &binder);

} // namespace PageLayouts
