// A two-dimensional document (drawing or fragment): the document with its
// views, their drawing objects, layers, variables, the modes and the
// transformation matrix. Answers ITavraDocument2D as well.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "sim/model/documents/document.h"
#include "sim/model/drawing/drawing_events.h"
#include "sim/model/drawing/layers.h"
#include "sim/model/drawing/object_search.h"
#include "sim/model/drawing/variables.h"

namespace tvsim {

class DrawingObject;
class View;
class Views;
class ViewsAndLayersManager;

class DrawingDocument final : public Document, public Default<tvapi::ITavraDocument2D> {
public:
    DrawingDocument(Documents& owner, int type, bool visible, bool read_only);

    tvapi::SmartPtr<tvapi::IViewsAndLayersManager> GetViewsAndLayersManager() override;
    tvapi::SmartPtr<tvapi::IAPIObject> GetObject2DEvents(const tvapi::WString& key) override;
    tvapi::SmartPtr<tvapi::IAPIObject> GetDrawingObjectEventsResult() override { return object_events_.Result(); }

    // Objects (drawing_document_objects.cpp)
    ObjectList CopyObjects(const tvapi::SmartPtr<tvapi::ITavraDocument2D>& sourceDocument,
                           const ObjectList& objects) override;
    bool CreateHyperLink(const ObjectList& objects, tvapi::tvHyperLinkTypeEnum linkType,
                         const tvapi::WString& reference, const tvapi::SmartPtr<tvapi::IDrawingObject>& target,
                         bool showDialog) override;
    ObjectList GetHyperLinkObjects(tvapi::tvHyperLinkTypeEnum linkType,
                                   const tvapi::SmartPtr<tvapi::IDrawingObject>& target, bool includeInvisible,
                                   const tvapi::WString& reference) override;
    bool DeleteHyperLinks(const ObjectList& objects) override;
    tvapi::SmartPtr<tvapi::IDrawingObject> GetObjectById(const std::vector<double>& id) override;
    tvapi::SmartPtr<tvapi::IDrawingObject> FindObject(
        double x, double y, double radius, const tvapi::SmartPtr<tvapi::IFindObjectParameters>& parameters) override;
    ObjectList FindObjects(double x, double y, double radius,
                           const tvapi::SmartPtr<tvapi::IFindObjectParameters>& parameters) override;
    ObjectList SelectObjects(tvapi::tvSelectObjectsModeEnum mode, double x1, double y1, double x2,
                             double y2) override;
    bool DestroyObjects(const ObjectList& objects) override;
    bool ChangeObjectsOrder(const ObjectList& objects, const tvapi::SmartPtr<tvapi::IDrawingObject>& relativeObject,
                            tvapi::tvObjectsOrderEnum order) override;
    bool GetObjectsGabarit(const ObjectList& objects, double* x1, double* y1, double* x2, double* y2) override;
    bool MoveObjects(const ObjectList& objects, double dx, double dy) override;
    bool RotateObjects(const ObjectList& objects, double x, double y, double angle) override;
    bool CheckAssociation(bool repair, int* checkedCount, int* brokenCount) override;
    tvapi::SmartPtr<tvapi::IGabaritObject> ViewGetObjectsArea(
        const std::vector<tvapi::SmartPtr<tvapi::IView>>& views) override;

    // Variables (drawing_document_variables.cpp)
    std::vector<tvapi::SmartPtr<tvapi::IVariable>> GetVariables(tvapi::tvVariableTypeEnum variableType) override;
    tvapi::SmartPtr<tvapi::IVariable> GetVariable(tvapi::tvVariableTypeEnum variableType, int index) override;
    tvapi::SmartPtr<tvapi::IVariable> GetVariableByName(tvapi::tvVariableTypeEnum variableType,
                                                        const tvapi::WString& name) override;
    int GetVariablesCount(tvapi::tvVariableTypeEnum variableType) override;
    bool UpdateVariables() override;
    bool IsVariableNameValid(const tvapi::WString& name) override;
    tvapi::SmartPtr<tvapi::IVariable> AddVariable(const tvapi::WString& name, double value,
                                                  const tvapi::WString& expression) override;
    bool RebuildDocument() override;
    bool CompleteRebuildDocument() override;
    std::vector<tvapi::SmartPtr<tvapi::IIntervalVariable>> GetIntervalVariables() override;
    tvapi::SmartPtr<tvapi::IIntervalVariable> AddIntervalVariable(const tvapi::WString& name, double firstValue,
                                                                  double secondValue) override;
    tvapi::SmartPtr<tvapi::IIntervalVariable> GetIntervalVariable(int index) override;
    tvapi::SmartPtr<tvapi::IIntervalVariable> GetIntervalVariableByName(const tvapi::WString& name) override;
    std::vector<tvapi::SmartPtr<tvapi::IVariable>> GetUserFuncVariables() override;
    tvapi::SmartPtr<tvapi::IVariable> AddUserFuncVariable(const tvapi::WString& name,
                                                          const tvapi::WString& expression) override;
    tvapi::SmartPtr<tvapi::IVariable> GetUserFuncVariable(int index) override;
    tvapi::SmartPtr<tvapi::IVariable> GetUserFuncVariableByName(const tvapi::WString& name) override;

    // The matrix (drawing_document_matrix.cpp)
    bool CreateMatrix(double x, double y, double angle, double scaleX, double scaleY) override;
    bool DeleteMatrix() override;
    bool TransformPointIntoMatrix(double x, double y, double* resultX, double* resultY) override;
    bool TransformPointFromMatrix(double x, double y, double* resultX, double* resultY) override;
    bool TransformLengthIntoMatrix(double* length) override;
    bool TransformLengthFromMatrix(double* length) override;
    bool TransformAngleIntoMatrix(double* angle) override;
    bool TransformAngleFromMatrix(double* angle) override;
    bool TransformObjects(const ObjectList& objects) override;

    // Modes and flags
    bool ClearUndo() override { return IsOpen(); }
    void SetEnableUndo(bool value) override { undo_enabled_ = value; }
    bool IsEnableUndo() override { return undo_enabled_; }
    void SetUndoContainer(bool value) override { undo_container_ = value; }
    bool IsUndoContainer() override { return undo_container_; }
    void SetTreeNeedRebuild(bool value) override { tree_needs_rebuild_ = value; }
    bool IsTreeNeedRebuild() override { return tree_needs_rebuild_; }
    void SetTreeNeedUpdateItems(bool value) override { tree_needs_update_ = value; }
    bool IsTreeNeedUpdateItems() override { return tree_needs_update_; }
    void SetParametricMode(bool value) override;
    bool IsParametricMode() override { return parametric_; }
    void SetOrthogonalMode(bool value) override;
    bool IsOrthogonalMode() override { return orthogonal_; }

    // The model's side.
    const std::vector<Ref<View>>& AllViews() const { return views_; }
    View* ViewByNumber(int number) const;
    View* ActiveView() const { return active_view_; }
    void Activate(View& view);
    // A new view; a number in use (or none) gets the next free one, and an
    // empty name "View <number>".
    Ref<View> AddView(ViewData data);
    LayerSet& AllLayers() { return layers_; }
    std::uint64_t NextObjectId() { return next_id_++; }
    tvapi::SmartPtr<tvapi::IViews> ViewsFace() const;
    DrawingEvents& ObjectEvents() { return object_events_; }

protected:
    ~DrawingDocument() override;
    void SaveContent(DocumentData& data) const override;
    void LoadContent(const DocumentData& data) override;
    void DisposeContent() override;
    Box ContentBounds() const override;

private:
    std::vector<DrawingObject*> AllObjects() const;
    int ObjectsOnLayer(int layer) const;
    // The caller's list as this drawing's objects; nothing when an element
    // is null, foreign, no longer valid, or another drawing's.
    std::optional<std::vector<DrawingObject*>> Resolve(const ObjectList& objects) const;
    DrawingObject* ResolveOne(const tvapi::SmartPtr<tvapi::IDrawingObject>& object) const;
    // The first sheet view of a new drawing.
    void AddSheetView();

    LayerSet layers_;
    VariableSet variables_;
    std::vector<Ref<View>> views_;
    View* active_view_ = nullptr;
    Ref<ViewsAndLayersManager> manager_;
    Ref<Views> views_face_;
    DrawingEvents object_events_;
    std::optional<Placement> matrix_;
    std::uint64_t next_id_ = 1;
    bool parametric_ = false, orthogonal_ = false;
    bool undo_enabled_ = true, undo_container_ = false;
    bool tree_needs_rebuild_ = false, tree_needs_update_ = false;
};

}  // namespace tvsim
