unit Plain;
var Q: TQuery;
end.
