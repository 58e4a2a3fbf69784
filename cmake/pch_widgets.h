#pragma once

#include "pch_core.h"

#include <QApplication>
#include <QFont>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QPointer>
#include <QStyle>
#include <QTimer>
#include <QWidget>
