unit C;
var Q: TQuery;
end.
