inherited FarForm: TFarForm
  object DbF: TDatabase
    DatabaseName = 'Far'
  end
  object QF: TQuery
    DatabaseName = 'Far'
  end
end
