// KyGraph.h: everything a host application needs, in one include. A host that links
// KyGraph::KyGraph writes `#include <kygraph/KyGraph.h>` and has the chart and settings
// singletons, every drawable element, the state model, number formatting, the string table
// and the framework types it passes in (windows, device contexts, points, strings).
#pragma once

// Framework types of the interface.
#include <kygraph/Bitmap.h>
#include <kygraph/Brush.h>
#include <kygraph/DC.h>
#include <kygraph/DrawRecord.h>
#include <kygraph/Font.h>
#include <kygraph/ImageWnd.h>
#include <kygraph/Pen.h>
#include <kygraph/Point.h>
#include <kygraph/Rect.h>
#include <kygraph/ResourceModule.h>
#include <kygraph/Saturate.h>
#include <kygraph/Size.h>
#include <kygraph/String.h>
#include <kygraph/VoArray.h>
#include <kygraph/WinTypes.h>
#include <kygraph/Wnd.h>

// The state model.
#include <kygraph/KyAS.h>
#include <kygraph/KyArray.h>
#include <kygraph/KyChart.h>
#include <kygraph/KyMap.h>
#include <kygraph/KyObject.h>
#include <kygraph/KyProcess.h>
#include <kygraph/KyPsychro.h>
#include <kygraph/KyStaPnt.h>
#include <kygraph/KyTypes.h>

// Number formatting.
#include <kygraph/StringUtils.h>

// Settings.
#include <kygraph/KyGChartSetting.h>
#include <kygraph/KyGDimContentSetting.h>
#include <kygraph/KyGDrawHstSetting.h>
#include <kygraph/KyGRangeSetting.h>
#include <kygraph/KyGShortSetting.h>
#include <kygraph/KyGStyleSetting.h>
#include <kygraph/KyLineStyle.h>
#include <kygraph/KyPntStyle.h>
#include <kygraph/KyStaPntPty.h>

// The chart core and its string table.
#include <kygraph/KyGChart.h>
#include <kygraph/KyGDrawBase.h>
#include <kygraph/KyGraphModule.h>
#include <kygraph/Resource.h>

// Drawable elements: the background families and the host's overlays.
#include <kygraph/KyGASChart.h>
#include <kygraph/KyGChartFrame.h>
#include <kygraph/KyGDRuler.h>
#include <kygraph/KyGHRuler.h>
#include <kygraph/KyGProcess.h>
#include <kygraph/KyGSameAS.h>
#include <kygraph/KyGSameD.h>
#include <kygraph/KyGSameH.h>
#include <kygraph/KyGSameLine.h>
#include <kygraph/KyGSameRH.h>
#include <kygraph/KyGSameT.h>
#include <kygraph/KyGStaPnt.h>
