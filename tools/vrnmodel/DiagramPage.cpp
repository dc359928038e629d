// The diagram's HTML page: the SVG, the model data of the drawn tables as
// JSON, and a script that needs nothing from outside the file.
#include <sstream>

#include "JsonWriter.h"
#include "ModelDiagram.h"
#include "ModelReport.h"

namespace {

std::string ColumnList(const std::vector<CModelIndexColumn>& columns) {
    std::string list;
    for (const CModelIndexColumn& column : columns)
        list += (list.empty() ? "" : ", ") + column.name + (column.descending ? " DESC" : "");
    return list;
}

// One side of a foreign key's column pairs, as "A, B".
std::string PairSide(const CModelForeignKey& foreignKey, bool parent) {
    std::string list;
    for (const CModelColumnPair& pair : foreignKey.pairs)
        list += (list.empty() ? "" : ", ") + (parent ? pair.parentColumn : pair.childColumn);
    return list;
}

// A foreign key seen from one of its tables: the other table (its node id
// when it is drawn, so the page can go there), and both column lists.
void WriteRelationship(CJsonWriter& json, const CModel& model, const std::vector<bool>& drawn, int index, bool out) {
    const CModelForeignKey& foreignKey = model.foreignKeys[index];
    const int other = out ? foreignKey.parentTable : foreignKey.childTable;
    json.BeginObject();
    json.Field("name", foreignKey.name);
    json.Field("table", other < 0 ? std::string("?")
                                  : QualifiedName(model.tables[other].owner, model.tables[other].name));
    json.Field("id", other >= 0 && drawn[other] ? DiagramNodeId(other) : std::string());
    json.Field("columns", PairSide(foreignKey, !out));
    json.Field("otherColumns", PairSide(foreignKey, out));
    json.BoolField("identifying", foreignKey.identifying);
    json.Field("onDelete", std::string(ActionName(foreignKey.onDelete)));
    json.EndObject();
}

void WriteTableData(CJsonWriter& json, const CModel& model, const std::vector<bool>& drawn, int index) {
    const CModelTable& table = model.tables[index];
    json.Key(DiagramNodeId(index).c_str());
    json.BeginObject();
    json.Field("name", table.name);
    json.Field("owner", TrimmedOwner(table.owner));
    json.Key("columns");
    json.BeginArray();
    for (const CModelColumn& column : table.columns) {
        json.BeginObject();
        json.Field("name", column.name);
        json.Field("type", ColumnType(model, column));
        json.BoolField("nullable", column.nullable);
        json.BoolField("key", column.inPrimaryKey);
        json.BoolField("foreign", !column.foreignKeys.empty());
        json.EndObject();
    }
    json.EndArray();
    json.Key("indexes");
    json.BeginArray();
    for (const CModelIndex& key : table.indexes) {
        json.BeginObject();
        json.Field("name", key.name);
        json.Field("kind", std::string(key.keyType == 'P'   ? "primary key"
                                       : key.keyType == 'A' ? "unique key"
                                       : key.unique         ? "unique index"
                                                            : "index"));
        json.Field("columns", ColumnList(key.columns));
        json.EndObject();
    }
    json.EndArray();
    json.Key("references");
    json.BeginArray();
    for (int foreignKey : table.foreignKeys) WriteRelationship(json, model, drawn, foreignKey, true);
    json.EndArray();
    json.Key("referencedBy");
    json.BeginArray();
    for (int foreignKey : table.referencedBy) WriteRelationship(json, model, drawn, foreignKey, false);
    json.EndArray();
    json.Key("checks");
    json.BeginArray();
    for (int check : table.checks) {
        json.BeginObject();
        json.Field("name", model.checks[check].name);
        json.Field("column", model.checks[check].column);
        json.Field("text", model.checks[check].text);
        json.EndObject();
    }
    json.EndArray();
    json.EndObject();
}

// The drawn tables' details, keyed by node id. Every '<' is written as
// \u003c so that no name or text can end the script element it sits in.
std::string ModelData(const CModel& model, const std::vector<int>& tables) {
    std::vector<bool> drawn(model.tables.size(), false);
    for (int table : tables) drawn[table] = true;
    std::ostringstream text;
    CJsonWriter json(text);
    json.BeginObject();
    for (int table : tables) WriteTableData(json, model, drawn, table);
    json.EndObject();
    std::string data;
    for (char ch : text.str()) {
        if (ch == '<') data += "\\u003c";
        else data += ch;
    }
    return data;
}

const char* const kStyle = R"css(
body{margin:0;font:14px Helvetica,Arial,sans-serif;overflow:hidden;color:#1d2733}
#bar{position:fixed;top:0;left:0;right:0;height:40px;box-sizing:border-box;padding:7px 10px;background:#f4f6f9;
  border-bottom:1px solid #ccd;z-index:2;white-space:nowrap;overflow:hidden}
#bar input{width:16em}
#bar .hint{color:#667;margin-left:1em}
#view{position:absolute;top:40px;left:0;right:0;bottom:0;cursor:grab}
#view svg{width:100%;height:100%;display:block}
#matches{position:fixed;top:40px;left:10px;max-height:40%;overflow:auto;background:#fff;border:1px solid #ccd;
  border-top:none;z-index:2;display:none;min-width:16em}
#matches div{padding:3px 8px;cursor:pointer}
#matches div.current{background:#fde4d6}
#panel{position:fixed;top:40px;right:0;bottom:0;width:380px;overflow:auto;background:#fff;border-left:1px solid #ccd;
  padding:8px 12px;box-sizing:border-box;z-index:1;display:none}
#panel h2{font-size:17px;margin:4px 0 2px}
#panel h3{font-size:13px;margin:12px 0 4px;color:#44546a;text-transform:uppercase}
#panel table{border-collapse:collapse;width:100%}
#panel td{padding:2px 4px;vertical-align:top;border-bottom:1px solid #eef}
#panel .type{color:#555}
#panel a{color:#1d5fa8;cursor:pointer;text-decoration:underline}
#panel .close{float:right;cursor:pointer;border:none;background:none;font-size:18px}
g.node.hit polygon[fill="none"]{stroke:#d9480f;stroke-width:3}
g.node.hit polygon[fill="@HEADER@"]{fill:#fcd9c4}
g.node.current polygon[fill="none"]{stroke-width:6}
g.node{cursor:pointer}
)css";

std::string Style() {
    std::string style = kStyle;
    const std::size_t header = style.find("@HEADER@");
    return style.replace(header, 8, kDiagramHeaderFill);
}

// Coordinates: `s` screen pixels per SVG unit, and the SVG point at the
// view's top left corner. The viewBox always has the view's own shape, so
// nothing is letterboxed and a screen point maps to the drawing linearly.
const char* const kScript = R"js(
(function(){
'use strict';
var tables=JSON.parse(document.getElementById('model-data').textContent);
var view=document.getElementById('view');
var svg=view.querySelector('svg');
var base=svg.viewBox.baseVal;
var whole={x:base.x,y:base.y,w:base.width,h:base.height};
svg.removeAttribute('width');svg.removeAttribute('height');
var NAME_POINTS=13, LEGIBLE_PX=9;
var s=1,left=0,top=0;
var panelWidth=0;
function size(){return {w:Math.max(view.clientWidth,1),h:Math.max(view.clientHeight,1)};}
function apply(){var v=size();svg.setAttribute('viewBox',left+' '+top+' '+v.w/s+' '+v.h/s);}
function centre(box,scale){var v=size();s=scale;
  left=box.x+box.w/2-(v.w-panelWidth)/2/s;top=box.y+box.h/2-v.h/2/s;apply();}
// The whole drawing in the window. When the page opens, only if table
// names can still be read; else the top left corner (the largest group) at
// a readable size.
function fit(opening){var v=size();var scale=Math.min(v.w/whole.w,v.h/whole.h)*0.97;
  var legible=LEGIBLE_PX/NAME_POINTS;
  if(!opening||scale>=legible){centre(whole,scale);note('');}
  else{s=legible;left=whole.x;top=whole.y;apply();
    note('Zoomed in so that names can be read: "Whole diagram" shows everything.');}}
function note(text){document.getElementById('note').textContent=text;}
// A node's box in SVG units, whatever transforms dot put around it.
function boxOf(el){var r=el.getBoundingClientRect();var m=svg.getScreenCTM().inverse();
  var a=new DOMPoint(r.left,r.top).matrixTransform(m),b=new DOMPoint(r.right,r.bottom).matrixTransform(m);
  return {x:a.x,y:a.y,w:b.x-a.x,h:b.y-a.y};}
function goTo(id){var el=document.getElementById(id);if(!el)return;note('');var box=boxOf(el);var v=size();
  var scale=Math.min(2.5,0.6*v.h/box.h,0.8*(v.w-panelWidth)/box.w);
  centre(box,Math.max(scale,LEGIBLE_PX/NAME_POINTS));
  document.querySelectorAll('g.node.current').forEach(function(n){n.classList.remove('current');});
  el.classList.add('current');}
function qualified(t){return t.owner?t.owner+'.'+t.name:t.name;}
// Hovering a table shows its full name rather than dot's node name.
Object.keys(tables).forEach(function(id){var el=document.getElementById(id);
  var title=el&&el.querySelector('title');if(title)title.textContent=qualified(tables[id]);});

svg.addEventListener('wheel',function(e){e.preventDefault();var r=svg.getBoundingClientRect();
  var mx=e.clientX-r.left,my=e.clientY-r.top;var ux=left+mx/s,uy=top+my/s;
  s*=e.deltaY>0?1/1.15:1.15;left=ux-mx/s;top=uy-my/s;apply();},{passive:false});
var drag=null;
svg.addEventListener('mousedown',function(e){drag={x:e.clientX,y:e.clientY,moved:0};});
window.addEventListener('mousemove',function(e){if(!drag)return;var dx=e.clientX-drag.x,dy=e.clientY-drag.y;
  drag.moved+=Math.abs(dx)+Math.abs(dy);left-=dx/s;top-=dy/s;drag.x=e.clientX;drag.y=e.clientY;apply();});
window.addEventListener('mouseup',function(e){var click=drag&&drag.moved<4;drag=null;if(!click)return;
  var node=e.target.closest&&e.target.closest('g.node');if(node&&tables[node.id])show(node.id);});
window.addEventListener('resize',apply);
document.getElementById('fit').addEventListener('click',function(){fit(false);});

// Search: every table whose name (or owner.name) holds the text is marked
// and listed; the first is centred, Enter moves to the next.
var search=document.getElementById('search'),list=document.getElementById('matches');
var hits=[],at=-1;
function mark(){var q=search.value.trim().toLowerCase();hits=[];
  Object.keys(tables).forEach(function(id){var hit=q.length>0&&qualified(tables[id]).toLowerCase().indexOf(q)>=0;
    var el=document.getElementById(id);if(el)el.classList.toggle('hit',hit);if(hit)hits.push(id);});
  hits.sort(function(a,b){var na=tables[a].name.toLowerCase(),nb=tables[b].name.toLowerCase();
    var ea=na===q?0:na.indexOf(q)===0?1:2,eb=nb===q?0:nb.indexOf(q)===0?1:2;
    return ea-eb||(na<nb?-1:na>nb?1:0);});
  document.getElementById('found').textContent=q?(hits.length===1?'1 table':hits.length+' tables'):'';
  list.textContent='';
  hits.forEach(function(id,i){var row=document.createElement('div');row.textContent=qualified(tables[id]);
    row.addEventListener('click',function(){at=i;follow();show(id);});list.appendChild(row);});
  list.style.display=hits.length?'block':'none';at=hits.length?0:-1;follow();}
function follow(){if(at<0)return;goTo(hits[at]);
  Array.prototype.forEach.call(list.children,function(row,i){row.classList.toggle('current',i===at);
    if(i===at)row.scrollIntoView({block:'nearest'});});}
search.addEventListener('input',mark);
search.addEventListener('keydown',function(e){
  if(e.key==='Enter'&&hits.length){e.preventDefault();at=(at+(e.shiftKey?hits.length-1:1))%hits.length;follow();}
  if(e.key==='Escape'){search.value='';mark();}});

// The details panel, built from text nodes only: names and texts from a
// catalog are never read as markup.
var panel=document.getElementById('panel');
function el(tag,text,cls){var e=document.createElement(tag);if(text!==undefined)e.textContent=text;
  if(cls)e.className=cls;return e;}
function section(title,rows){if(!rows.length)return;panel.appendChild(el('h3',title));
  var t=el('table');rows.forEach(function(cells){var tr=el('tr');cells.forEach(function(c){
    var td=el('td');if(c instanceof Node)td.appendChild(c);else td.textContent=c;tr.appendChild(td);});
    t.appendChild(tr);});panel.appendChild(t);}
function link(rel){if(!rel.id)return rel.table;var a=el('a',rel.table);
  a.addEventListener('click',function(){goTo(rel.id);show(rel.id);});return a;}
function hide(){panel.style.display='none';panelWidth=0;}
function show(id){var t=tables[id];panel.textContent='';panelWidth=380;panel.style.display='block';
  var close=el('button','\u00d7','close');close.title='Close';close.addEventListener('click',hide);
  panel.appendChild(close);panel.appendChild(el('h2',t.name));if(t.owner)panel.appendChild(el('div','owner '+t.owner));
  section('Columns',t.columns.map(function(c){return [c.name+(c.key?' (PK)':'')+(c.foreign?' (FK)':''),
    el('span',c.type,'type'),c.nullable?'null':'not null'];}));
  section('Keys and indexes',t.indexes.map(function(i){return [i.name,i.kind,i.columns];}));
  section('Foreign keys',t.references.map(function(r){return [r.name,r.columns+' \u2192 ',link(r),r.otherColumns];}));
  section('Referenced by',t.referencedBy.map(function(r){return [r.name,link(r),r.columns+' \u2192 '+r.otherColumns];}));
  section('Checks',t.checks.map(function(c){return [c.name+(c.column?' ('+c.column+')':''),c.text];}));}
document.addEventListener('keydown',function(e){if(e.key==='Escape'&&e.target!==search)hide();});
fit(true);
})();
)js";

}  // namespace

std::string DiagramPage(const CModel& model, const std::vector<int>& tables, const std::string& title,
                        const std::string& svg) {
    // The SVG as dot writes it, without its XML prologue.
    const std::size_t start = svg.find("<svg");
    const std::string body = start == std::string::npos ? svg : svg.substr(start);
    std::ostringstream page;
    page << "<!DOCTYPE html>\n<html><head><meta charset=\"utf-8\"><title>" << MarkupEscape(title)
         << "</title>\n<style>" << Style() << "</style></head><body>\n"
         << "<div id=\"bar\"><b>" << MarkupEscape(title) << "</b> &nbsp; "
         << "<input id=\"search\" placeholder=\"find a table (Enter: next)\" autocomplete=\"off\"> "
         << "<span id=\"found\"></span> <button id=\"fit\">Whole diagram</button>"
         << "<span class=\"hint\" id=\"note\"></span>"
         << "<span class=\"hint\">drag to pan, wheel to zoom, click a table for its details</span></div>\n"
         << "<div id=\"matches\"></div>\n"
         << "<div id=\"view\">" << body << "</div>\n"
         << "<div id=\"panel\"></div>\n"
         << "<script type=\"application/json\" id=\"model-data\">" << ModelData(model, tables) << "</script>\n"
         << "<script>" << kScript << "</script>\n</body></html>\n";
    return page.str();
}
