-- An analogue clock that shows the frame's time code.
local white, red, dark = { 0.95, 0.95, 0.95 }, { 0.9, 0.25, 0.2 }, { 0.08, 0.10, 0.14 }

-- A hand of some length, so many turns past twelve, as thick as `wide` lines.
local function hand(d, x, y, turns, length, wide)
  local a = turns * 2 * math.pi
  local dx, dy = math.sin(a) * length, -math.cos(a) * length
  for k = -wide, wide do
    local ox, oy = math.cos(a) * k / 2, math.sin(a) * k / 2
    d:line(x + ox, y + oy, x + dx + ox, y + dy + oy)
  end
end

function frame(d)
  local x, y, r = d.w * 0.82, d.h * 0.3, d.h * 0.22
  d:color(table.unpack(dark))
  d:fillcircle(x, y, r)
  d:color(table.unpack(white))
  d:circle(x, y, r)
  for i = 1, 60 do
    local a = i / 60 * 2 * math.pi
    local from = r * (i % 5 == 0 and 0.84 or 0.93)
    d:line(x + math.sin(a) * from, y - math.cos(a) * from,
           x + math.sin(a) * r * 0.97, y - math.cos(a) * r * 0.97)
  end
  local hours, minutes, seconds, frames = d.tc:match("(%d+):(%d+):(%d+)[:;](%d+)")
  seconds = seconds + frames / d.fps
  minutes = minutes + seconds / 60
  hand(d, x, y, (hours + minutes / 60) / 12, r * 0.5, 3)
  hand(d, x, y, minutes / 60, r * 0.75, 2)
  d:color(table.unpack(red))
  hand(d, x, y, seconds / 60, r * 0.88, 0)
  d:fillcircle(x, y, r * 0.04)
end
