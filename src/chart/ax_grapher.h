#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "chart/chart_table.h"
#include "chart/chart_values.h"
#include "chart/colour_key.h"
#include "chart/drawing_device.h"
#include "chart/drawing_types.h"
#include "chart/grapher_events.h"
#include "chart/linked_crosshair.h"
#include "chart/property_bag.h"
#include "chart/screen_palette.h"
#include "chart/surface_mapping.h"
#include "chart/top_marks.h"

namespace anomalis::chart {

struct GrapherState;

/// The bytes of a captured chart: a versioned little-endian form with a length and a checksum.
using GraphicBytes = std::vector<std::uint8_t>;

/// A chart of series with axes, retained drawings, zoom and selection. It knows no window system: it draws on
/// the DrawingDevice it is given, is told of the mouse and the keyboard by its host's widget, and tells its
/// host what happened through GrapherEvents. One thread. Failures go to GrapherEvents::Failed, never out as
/// exceptions; where a status is returned it is 0, or -1 after a failure.
///
/// The order of a display: set limits and tick intervals, Layout() (the mapping of the new limits stands from
/// here on), record the Draw... items, DisplayChart(). After a change of the items alone: RefreshGraph(1).
class AX_Grapher {
  public:
    AX_Grapher();
    ~AX_Grapher();
    AX_Grapher(const AX_Grapher&) = delete;
    AX_Grapher& operator=(const AX_Grapher&) = delete;

    // -- Surroundings. All may be null; none is owned.

    /// The screen surface. Without one, layouts and displays return -1.
    void SetSurface(DrawingDevice* surface);
    DrawingDevice* Surface() const;
    void SetEvents(GrapherEvents* events);
    /// The bag that is told of every property that is set.
    void SetPropertyBag(PropertyBag* bag);
    void ReadProperties(const PropertyBag& bag);
    void WriteProperties(PropertyBag& bag) const;

    // -- Properties: without an argument the value, with one the setting. Limits count from the next display.

    Colour BackColor() const;
    void BackColor(Colour value);  ///< drops the kept pictures
    Colour ForeColor() const;
    void ForeColor(Colour value);  ///< of all texts
    bool Enabled() const;
    void Enabled(bool value);
    Font FONT() const;
    void FONT(const Font& value);  ///< numbers, letters, DrawText
    Font TitleFont() const;
    void TitleFont(const Font& value);  ///< title and axis labels
    int BackStyle() const;
    void BackStyle(int value);
    int BorderStyle() const;
    void BorderStyle(int value);
    int ChartType() const;
    void ChartType(int value);  ///< 0 markers, 1 lines, 2 bars; stored unchecked
    bool DisplayLegend() const;
    void DisplayLegend(bool value);  ///< the named series, in the corner that it covers least
    bool DisplayAxes() const;
    void DisplayAxes(bool value);
    bool DisplayBorder() const;
    void DisplayBorder(bool value);
    bool ZoomEnabled() const;
    void ZoomEnabled(bool value);
    bool PlotPoints() const;
    void PlotPoints(bool value);
    int AxisLabellingLocation() const;
    void AxisLabellingLocation(int value);  ///< 0 numbers outside the frame, 1 inside
    int XAxisLabellingPosition() const;
    void XAxisLabellingPosition(int value);  ///< 0 bottom, 1 top, 2 both
    int YAxisLabellingPosition() const;
    void YAxisLabellingPosition(int value);  ///< 0 left, 1 right, 2 both
    std::string Title() const;
    void Title(const std::string& value);
    std::string XAxisLabel() const;
    void XAxisLabel(const std::string& value);
    std::string YAxisLabel() const;
    void YAxisLabel(const std::string& value);
    double XAxisMin() const;
    void XAxisMin(double value);  ///< -99999 = unset: the data's range
    double XAxisMax() const;
    void XAxisMax(double value);
    double YAxisMin() const;
    void YAxisMin(double value);
    double YAxisMax() const;
    void YAxisMax(double value);
    double XTickInterval() const;
    void XTickInterval(double value);  ///< transformed units
    double YTickInterval() const;
    void YTickInterval(double value);
    int XAxisType() const;
    void XAxisType(int value);  ///< 0 linear, 1 two-sided logarithmic
    int YAxisType() const;
    void YAxisType(int value);
    double XBaseLog() const;
    void XBaseLog(double value);  ///< 0 or less, or 1, is ignored
    double YBaseLog() const;
    void YBaseLog(double value);
    double XAxisCutoff() const;
    void XAxisCutoff(double value);  ///< snapped down to a power of the base
    double YAxisCutoff() const;
    void YAxisCutoff(double value);
    float YAxisTopMargin() const;
    void YAxisTopMargin(float value);  ///< surface units, as the other margins
    float YAxisBottomMargin() const;
    void YAxisBottomMargin(float value);
    float XAxisLeftMargin() const;
    void XAxisLeftMargin(float value);
    float XAxisRightMargin() const;
    void XAxisRightMargin(float value);
    double DataNull() const;
    void DataNull(double value);
    int MarkerSize() const;
    void MarkerSize(int value);  ///< radius in surface units
    bool LightGrid() const;
    /// Light lines behind the series at the ticks with numbers, from the next display on; off at first and
    /// not persisted.
    void LightGrid(bool value);
    double NumberRoom() const;
    /// The width that the numbers of the Y axis have at least; surface units, not persisted.
    void NumberRoom(double value);
    int MouseMode() const;      ///< 0 none, 1 pan, 2 magnifier, 4 drag zoom (-4 while it runs), 8 box,
                                ///< 16 held by the host
    double XAxisScale() const;  ///< surface units a transformed unit
    double YAxisScale() const;
    bool HasPlotDefined() const;

    // -- Series.

    /// Takes a table of X and Y rows (see chart_table.h). Cells that are NaN, infinite, at or below -1E30 or
    /// equal to DataNull are nulls; the tail of a short row is nulls. Ignored while a redraw runs.
    void RegisterData(std::span<const ChartRow> rows);
    void RegisterData(const ChartTable& table);
    /// Fills the room between two curves, behind axes and series, from the next display on, in place of the
    /// bands before; none takes them away. They take no part in ranges and selection.
    void RegisterBands(std::span<const ChartBand> bands);
    /// Draws lines in the colours of their points, behind axes and series and over the bands, from the next
    /// display on, in place of those before. They take no part in ranges and selection; hundreds of thousands
    /// of points are meant.
    void RegisterTracks(std::span<const ChartTrack> tracks);
    /// Draws dots over the tracks, the first of them below the others, from the next display on, in place of
    /// those before. They take no part in ranges and selection; a hundred thousand are meant.
    void RegisterDots(std::span<const ChartDot> dots);
    /// Name "", colour below 0, visible below 0 and width 0 or less leave what is there; marker is always
    /// set.
    void SetSeriesOptions(int group, int series, Colour colour, const std::string& name, int marker,
                          int visible, int width);
    /// A cased line has a darker edge where its colour is seen badly on the ground; off until it is set.
    void SetSeriesCasing(int group, int series, bool cased);
    /// How the line of a series is dashed; solid until it is set.
    void SetSeriesLineStyle(int group, int series, LineStyle style);
    /// Styles or colours of single points. Series 0 or less: all of the group, else from it to the group's
    /// last; group 0 or less: all; point 0 or less: all. The chart does not redraw.
    void RegisterMarker(const MarkerTable& markers, int group, int series, int point);
    void RegisterMarkerColour(const MarkerTable& colours, int group, int series, int point);
    int PointMarker(int series, int point) const;
    void PointMarker(int series, int point, int style);
    /// The colour that a series number has before it is given one of its own.
    static Colour set_pen_colour(int index);

    // -- Display.

    /// Range steps and layout from the limit properties, nothing drawn: afterwards XAxisScale, YAxisScale,
    /// PlotRect and ViewLimits are those of the next display.
    int Layout();
    /// A full redraw from the limit properties: picture, overlay, highlight.
    int DisplayChart();
    /// Axes, title and series on the current target: no limits, no overlay, nothing shown.
    int display_current_chart();
    /// Mode below 1: redraw. Otherwise the kept picture with the overlay drawn anew.
    int RefreshGraph(int mode);
    void Clear();
    void ClearAll();  ///< as Clear; zoom and the shown picture stay
    /// The surface has another size, scale or content: drops the pictures and redraws what is there.
    void Resize();
    /// Whatever must be painted live above the kept picture: highlight, box, magnifier, crosshair.
    void DrawTopLayer(DrawingDevice& target);
    /// Chart and overlay, without highlight and gestures, on another target and with its text measure; the
    /// screen is not touched. The size is `size`, or the chart's surface's, or the target's. The caller opens
    /// and closes the page, so that several charts may share one.
    int DrawTo(DrawingDevice& target, OutputTarget kind, const SurfaceMapping& mapping,
               std::optional<SurfaceSize> size = std::nullopt);

    // -- Retained graphics, in user units; told in drawing order and replayed over every redraw.

    void DrawMarker(double x, double y, int style, Colour colour, int width);
    void DrawText(double angle, double x, double y, const std::string& text);
    void DrawRectangle(double x1, double y1, double x2, double y2, Colour pen, Colour fill, int width);
    /// The number of the polygon, 0 when it has fewer than 2 points.
    int DrawPolygon(int count, const double* xs, const double* ys, Colour pen, Colour fill, int width);
    void DrawLine(double x1, double y1, double x2, double y2, Colour colour, int width, int style = 0);
    void DrawPolyLine(int count, const double* xs, const double* ys, Colour colour, int width);
    void DrawXLine(double x, Colour colour, int width);
    void DrawYLine(double y, Colour colour, int width);
    void ClearSavedGraphics();
    void DrawGraphics();
    int SavedCount() const;
    int PolygonCount() const;
    /// Captures the chart; `mode` below 0 as target 1, else 0. It becomes the item count, 0 after a failure.
    void GraphicsStream(int& mode, GraphicBytes& stream);
    /// Plays a captured chart back. `offset_y` is the pixel row of the chart's bottom edge: at scale 1,
    /// offsets (0, height in pixels - 1) give the picture of the redraw. A stream that is cut or corrupt, no
    /// device, or another count gives -1 and changes nothing.
    int DrawGraphicsStream(DrawingDevice* device, int count, const GraphicBytes& stream, bool landscape,
                           double page_width, double page_height, double scale, double offset_x,
                           double offset_y);

    // -- Zoom and selection.

    std::optional<SelectedPoint> SelectPoint() const;
    void SelectPoint(int group, int series, int point, bool show);
    void ResetZoom();  ///< repaints and raises ChartReset; zoom values stay
    void clear_zoom_values();
    void save_zoom_values();
    void restore_zoom_values();
    /// Ends at once before the first display.
    int SetZoomValues(double zx, double cx, double zy, double cy);
    ZoomValues CurrentZoom() const;
    /// The two locks of the menu: 0 X, 1 Y. A lock stops zooming of its axis, not panning; with equal scales
    /// either lock stops both.
    bool ZoomLock(int axis) const;
    void ZoomLock(int axis, bool locked);

    // -- What hosts need to know.

    Rect ViewLimits() const;  ///< the window on show, user units
    Rect ViewRange() const;   ///< the same, transformed units
    Rect FullRange() const;   ///< transformed units
    Rect PlotRect() const;    ///< surface units
    NaturalMargins PlotMargins() const;
    /// The width of the widest number that the Y axis may have at any zoom of its limits; surface units.
    double WidestNumber() const;
    double TextWidth(const std::string& text) const;  ///< in FONT, surface units
    double TextHeight() const;                        ///< in FONT, surface units
    Point UserToSurface(Point user) const;
    /// From surface units (y up) to user units.
    Point SurfaceToUser(Point surface) const;
    /// Equal scales: from the next layout a transformed unit of X is as long as one of Y at every size, zoom
    /// and output. The axis with room to spare shows more than its limits: see ViewLimits and FullRange. For
    /// maps; off at first.
    bool EqualScales() const;
    void EqualScales(bool value);
    bool Crosshair() const;
    void Crosshair(bool value);  ///< lines and a read-out that follow the pointer; off at first
    /// What linked charts tell of the place under a pointer, while there is one. Shown with the crosshair.
    void LinkCrosshair(std::optional<LinkedCrosshair> linked);
    /// Behind what is read off by crosshair and measuring box; "" at first.
    void ReadOutUnits(const std::string& x, const std::string& y);
    void PictureLegend(bool value);  ///< DrawTo draws it whatever the screen shows; off at first
    /// A scale of colours in a corner, from the next display on.
    void ShowColourKey(std::optional<ColourKey> key);
    /// The colours of the screen alone; none: as they are. Redraws what is there.
    void WearPalette(const std::optional<ScreenPalette>& palette);

    /// What the host shows above the picture, on screen alone.
    const TopMarks& ShownTopMarks() const;
    void ShowTopMarks(TopMarks marks);
    /// The pointer over this chart, for the widget to show.
    PointerShape Pointer() const;
    void Pointer(PointerShape shape);
    /// The retained polygon that a press would select, 0 for none: data points come before polygons.
    int PolygonUnder(float x, float y) const;
    /// The host lets go of a press that it holds; it is not told.
    void LetGo();

    // -- Input, told by the widget. X and Y are surface units from the left and top edge.

    void HandleMouseDown(int button, int shift, float x, float y);
    void HandleMouseMove(int buttons, int shift, float x, float y);
    void HandleMouseUp(int button, int shift, float x, float y);
    void HandleMouseLeave();
    void HandleDoubleClick(int button);
    /// Offers a press to the host. True: it holds the press.
    bool HandleHold(int button, int shift, float x, float y);
    /// `delta` in eighths of a degree, forward positive; forward zooms in. Whole steps of 120 count.
    void HandleWheel(int keys, int delta, float x, float y);
    /// Pinch: a factor above 1 zooms in about the position.
    void HandlePinch(double factor, float x, float y);
    /// Pans by a distance in surface units (x to the right, y upward); nothing at zoom 1.
    void PanBy(double dx, double dy);
    /// Every key goes to the host first. Those it leaves to the chart, without Control and Alt: 37 to 40 pan
    /// (with Control too), 107/187 and 109/189 zoom, 48/96 and 36 reset, 27 ends a gesture, 93 asks for the
    /// menu. True when host or chart have used the key; any other is meant for whoever stands behind the
    /// chart.
    bool HandleKeyDown(int key_code, int shift);
    /// A character that was typed. True when the host has changed it.
    bool HandleKeyPress(int key_ascii);
    bool HandleKeyUp(int key_code, int shift);

    // -- Small services.

    template <class Cell>
    static bool ArrayIsInitialized(const std::vector<Cell>& table) {
        return array_is_initialized(table);
    }
    template <class Cell>
    static int ArrayRank(const std::vector<Cell>& table) {
        return array_rank(table);
    }
    template <class Cell>
    static int ArrayUBound(const std::vector<Cell>& table, int dimension) {
        return array_upper_bound(table, dimension);
    }
    /// The folder of a path with a leading and a trailing "/"; the folder as it was written, with a trailing
    /// one. "" when the path names no folder.
    static std::string file_dir(std::string_view path);
    static std::string file_path(std::string_view path);
    /// Makes the folder `path`, or the folder of the file `path`, the current one.
    static int change_dir(const std::string& path);
    void UnHook() {}  ///< no action

  private:
    std::unique_ptr<GrapherState> state_;
};

/// Sets the left and right margins of these charts so that their plots coincide in X, and go on doing so at
/// any zoom: the room of their numbers is that of the widest one that any of them may come to show.
void align_plots(std::span<AX_Grapher* const> charts);

}  // namespace anomalis::chart
